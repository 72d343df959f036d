#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Esquemas.h"

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

constexpr int evento = 2, tarea = 3; // entity_type

struct Cita {
    const char *titulo;
    const char *sitio;
    int minutos; ///< 0: the whole day
};
constexpr std::array citas{Cita{"Dentista", "Clínica Dental Ñ", 30},
                           Cita{"Comida con Íñigo; llevar el libro", "Casa Paco", 90},
                           Cita{"Tutoría del cole", "Aula 3", 45},
                           Cita{"Pádel 🎾", "Polideportivo municipal", 90},
                           Cita{"Revisión de la caldera", nullptr, 60},
                           Cita{"Puente de diciembre", nullptr, 0},
                           Cita{"Concierto en la sala\nApolo", "Sala Apolo", 150},
                           Cita{"Cumple de Lucía", nullptr, 0},
                           Cita{"Vuelo a Santiago (IB 0516)", "T4", 75},
                           Cita{"Reunión de vecinos", "Portal", 60}};
// Left from a system that kept tasks among the events.
constexpr std::array tareas{"Renovar el DNI", "Pagar el comedor"};

std::vector<qint64> ponCalendarios(Base &base, Azar &a)
{
    const auto local = Insercion(base, "Store", "name, type, disabled, persistent_id").mete("Default", 0, 0, a.uuid());
    const auto nube = Insercion(base, "Store", "name, type, disabled, persistent_id").mete("iCloud", 2, 0, a.uuid());
    Insercion calendario(
        base, "Calendar",
        "store_id, title, flags, color, symbolic_color_name, type, supported_entity_types, display_order, UUID");
    std::vector<qint64> filas;
    for (const auto &[titulo, color, tipos] :
         {std::tuple{"Casa", "#1BADF8", 4}, {"Trabajo", "#CC73E1", 4}, {"Familia ❤️", "#FF2968", 4}})
        filas.push_back(calendario.mete(nube, titulo, 0, color, "custom", nullptr, tipos,
                                        static_cast<int>(filas.size()), a.uuid()));
    filas.push_back(calendario.mete(nube, "Recordatorios", 0, "#FF9500", "orange", nullptr, 8, 3, a.uuid()));
    calendario.mete(local, "Cumpleaños", 0, "#8295AF", "custom", "birthday", 4, 4, a.uuid());
    return filas;
}

} // namespace

void ponCalendario(Contexto &c)
{
    auto a = c.azar("calendario");
    Base base(c.dominio("HomeDomain", u"Library/Calendar/Calendar.sqlitedb"_s));
    base.ejecuta(esquemaCalendario);
    const auto calendarios = ponCalendarios(base, a);
    Insercion cosa(
        base, "CalendarItem",
        "summary, description, start_date, start_tz, end_date, end_tz, all_day, calendar_id, status, availability, "
        "last_modified, unique_identifier, has_recurrences, has_attendees, UUID, entity_type, priority, due_date, "
        "due_tz, due_all_day, completion_date, creation_date");
    Insercion sitio(base, "Location", "title, item_owner_id");
    Insercion repeticion(base, "Recurrence", "frequency, interval, week_start, count, owner_id, uuid");
    Insercion alarma(base, "Alarm", "trigger_interval, type, owner_id, UUID");
    auto meteCita = [&](const QString &titulo, const char *donde, qint64 desde, qint64 minutos, bool repite) {
        // A whole day has no zone: it is stored as if the clock showed UTC.
        const auto hasta = minutos > 0 ? desde + minutos * 60 : desde + 86399;
        const auto *zona = minutos > 0 ? "Europe/Madrid" : "_float";
        const auto fila = cosa.mete(titulo, a.si(20) ? std::optional(u"No olvidar la documentación"_s) : std::nullopt,
                                    apple(desde), zona, apple(hasta), zona, minutos == 0,
                                    a.uno(std::vector(calendarios.begin(), calendarios.end() - 1)), 1, 0,
                                    apple(desde - 600'000), a.uuid(), repite, false, a.uuid(), evento, 0, nullptr,
                                    nullptr, nullptr, nullptr, apple(desde - 700'000));
        if (donde)
            sitio.mete(donde, fila);
        if (repite)
            repeticion.mete(2, 1, 1, 0, fila, a.uuid());
        if (a.si(50))
            alarma.mete(-1800, 0, fila, a.uuid());
    };
    auto meteTarea = [&](const QString &titulo, qint64 vence, bool hecha) {
        cosa.mete(titulo, nullptr, nullptr, nullptr, nullptr, nullptr, 0, calendarios.back(), 0, 0,
                  apple(vence - 90'000), a.uuid(), false, false, a.uuid(), tarea, a.entero(0, 1) * 5, apple(vence),
                  "Europe/Madrid", 0, hecha ? std::optional(apple(vence - 3600)) : std::nullopt,
                  apple(vence - 400'000));
    };
    const int cuantas = c.segun(12, 110, 2000);
    for (int i = 0; i < cuantas; ++i) {
        const auto &cita = citas[static_cast<size_t>(i) % citas.size()];
        const auto dia = (ahoraDelTelefono / 86400 + 60 - i * 700 / cuantas) * 86400;
        const auto hora = cita.minutos == 0 ? 0 : a.entero(8, 19) * 3600 + a.entero(0, 3) * 900;
        meteCita(QString::fromUtf8(cita.titulo), cita.sitio, dia + hora, cita.minutos, i % 10 == 3);
    }
    for (size_t i = 0; i < tareas.size(); ++i)
        meteTarea(QString::fromUtf8(tareas[i]), 1'480'000'000 + static_cast<qint64>(i) * 260'000, i == 1);
    base.empiezaDiario(false);
    meteCita(u"Café con Bego ☕️"_s, "La Central", ahoraDelTelefono + 86400, 60, false);
    c.recoge(base);
}

} // namespace simulado
