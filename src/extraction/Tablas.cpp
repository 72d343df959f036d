#include "core/EscritorDeTexto.h"
#include "extraction/Extraccion.h"
#include "extraction/Renglones.h"

#include <QHash>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

bool esUno(const Fila &fila, int columna)
{
    return fila.utf8(columna) == QByteArrayView("1");
}

/// Whole seconds of a stored duration; 0 when it is no number.
QByteArray segundos(const Fila &fila, int columna)
{
    const auto valor = fila.real(columna).value_or(fila.texto(columna).toDouble());
    constexpr double maximo = 1e15; // nobody has talked for thirty million years
    return QByteArray::number(static_cast<qint64>(valor > -maximo && valor < maximo ? valor : 0));
}

/// Name of a kind of measurement in the health database (its column data_type), as other readers of that database
/// number them. What is not among them is told by its number.
QByteArray medicion(const QByteArray &codigo)
{
    static const QHash<QByteArray, QByteArray> nombres{{"0", "Índice de masa corporal"},
                                                       {"1", "Grasa corporal"},
                                                       {"2", "Altura"},
                                                       {"3", "Peso"},
                                                       {"4", "Masa magra"},
                                                       {"5", "Frecuencia cardiaca"},
                                                       {"7", "Pasos"},
                                                       {"8", "Distancia caminando"},
                                                       {"9", "Energía en reposo"},
                                                       {"10", "Energía activa"},
                                                       {"12", "Pisos subidos"},
                                                       {"14", "Oxígeno en sangre"},
                                                       {"16", "Tensión arterial sistólica"},
                                                       {"17", "Tensión arterial diastólica"},
                                                       {"62", "Temperatura corporal"},
                                                       {"63", "Sueño"},
                                                       {"70", "Horas de pie"},
                                                       {"75", "Tiempo de ejercicio"},
                                                       {"79", "Entrenamientos"},
                                                       {"83", "Distancia en bicicleta"},
                                                       {"87", "Agua"},
                                                       {"110", "Distancia nadando"},
                                                       {"118", "Frecuencia cardiaca en reposo"},
                                                       {"139", "Variabilidad de la frecuencia cardiaca"},
                                                       {"173", "Volumen de los auriculares"}};
    return nombres.value(codigo, "Tipo " + codigo);
}

constexpr qsizetype maximoDeVisitas = 5000;
constexpr auto ordenDeVisitas = "ORDER BY v.visit_time DESC LIMIT 5000";

const auto visitas = Tabla{u"Safari - historial.csv"_s, "Fecha;Título;Dirección\n",
                           siempre("SELECT i.url, IFNULL(v.title,''), v.visit_time "
                                   "FROM history_visits v JOIN history_items i ON i.id = v.history_item"),
                           ordenDeVisitas, [](QByteArray &linea, const Fila &fila) {
                               ponerFechaDeLasDos(linea, fila, 2);
                               linea += ';';
                               ponerCampo(linea, fila, 1);
                               linea += ';';
                               ponerCampo(linea, fila, 0);
                               linea += '\n';
                           }};

const auto marcadores =
    Tabla{u"Safari - marcadores.txt"_s, "TUS MARCADORES DE SAFARI\n\n",
          [](const BaseDelTelefono &base) {
              // A bookmark that was deleted stays until the other devices know.
              return QByteArray("SELECT IFNULL(title,''), IFNULL(url,'') FROM bookmarks "
                                "WHERE url IS NOT NULL AND url <> ''") +
                     (base.columnas("bookmarks").contains("deleted") ? " AND IFNULL(deleted,0) = 0" : "");
          },
          "ORDER BY title",
          [](QByteArray &linea, const Fila &fila) {
              Renglones::ponerEnUno(linea, fila.utf8(0));
              linea += "\n    ";
              Renglones::ponerEnUno(linea, fila.utf8(1));
              linea += "\n\n";
          }};

/// Every profile of Safari has a history of its own; their visits are told together, the latest first. What a new place
/// took over from an old one is told once.
qint64 escribirVisitas(const QString &desde, const QString &a)
{
    auto bases = buscar(u"History.db"_s, desde);
    if (const auto deSafari = bases.filter(u"/Safari/"_s); !deSafari.isEmpty())
        bases = deSafari;
    if (bases.size() < 2)
        return escribirTabla(visitas, bases, a);
    std::vector<std::pair<double, QByteArray>> todas;
    bool entera = true;
    for (const auto &fichero : std::as_const(bases)) {
        const auto base = abrirPublico(fichero);
        if (!base)
            continue;
        base->porCadaFila(visitas.consulta(*base).constData(), visitas.orden, [&](const Fila &fila) {
            todas.emplace_back(fila.real(2).value_or(0), QByteArray());
            visitas.linea(todas.back().second, fila);
        });
        entera = entera && !base->danada();
    }
    std::sort(todas.begin(), todas.end(), std::greater());
    todas.erase(std::unique(todas.begin(), todas.end()), todas.end());
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (todas.empty() || !carpeta)
        return 0;
    EscritorDeTexto escritor(*carpeta, visitas.fichero.toUtf8());
    escritor << visitas.cabecera;
    const auto cuantas = std::min<qsizetype>(maximoDeVisitas, static_cast<qsizetype>(todas.size()));
    for (qsizetype i = 0; i < cuantas; ++i)
        escritor << todas[static_cast<size_t>(i)].second;
    return escritor.cerrar(entera) ? cuantas : 0;
}

} // namespace

std::optional<QString> llamadas(const QString &desde, const QString &a)
{
    const Tabla tabla{u"Llamadas.csv"_s, "Número;Fecha;Sentido;Duración (segundos)\n",
                      siempre("SELECT IFNULL(ZADDRESS,''), ZDATE, ZORIGINATED, ZDURATION FROM ZCALLRECORD"),
                      "ORDER BY ZDATE DESC", [](QByteArray &linea, const Fila &fila) {
                          Renglones::ponerEnUno(linea, fila.utf8(0));
                          linea += ';';
                          ponerFecha(linea, fila, 1);
                          linea += esUno(fila, 2) ? ";Saliente;" : ";Entrante;";
                          linea += segundos(fila, 3) + '\n';
                      }};
    const auto filas = escribirTabla(tabla, {buscarPublico(u"CallHistory.storedata"_s, desde)}, a);
    return filas > 0 ? std::optional(u"Llamadas: %1 registradas (Llamadas.csv)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> safari(const QString &desde, const QString &a)
{
    QStringList partes;
    if (const auto filas = escribirVisitas(desde, a); filas > 0)
        partes << u"historial (%1 visitas)"_s.arg(filas);
    if (const auto filas = escribirTabla(marcadores, {buscarPublico(u"Bookmarks.db"_s, desde)}, a); filas > 0)
        partes << u"marcadores (%1)"_s.arg(filas);
    return partes.isEmpty() ? std::nullopt : std::optional(u"Safari: "_s + partes.join(u", "_s));
}

std::optional<QString> salud(const QString &desde, const QString &a)
{
    const auto consulta = [](const BaseDelTelefono &base) {
        constexpr auto borrada = "2"; // kind of the object that stays in the place of a measurement
        const bool conObjetos = base.columnas("samples").contains("data_id") &&
                                base.columnas("objects").contains(QSet<QByteArray>{"data_id", "type"});
        return QByteArray("SELECT data_type, COUNT(*), MIN(start_date), MAX(start_date) FROM samples ") +
               (conObjetos ? QByteArray("WHERE IFNULL(data_id IN (SELECT data_id FROM objects WHERE type = ") +
                                 borrada + "), 0) = 0 "
                           : QByteArray()) +
               "GROUP BY data_type";
    };
    const Tabla tabla{u"Salud.csv"_s, "Qué;Cuántas mediciones;Desde;Hasta\n", consulta, "ORDER BY COUNT(*) DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          Renglones::ponerEnUno(linea, medicion(fila.utf8(0).toByteArray()));
                          linea += ';';
                          linea += fila.utf8(1);
                          linea += ';';
                          ponerFecha(linea, fila, 2);
                          linea += ';';
                          ponerFecha(linea, fila, 3);
                          linea += '\n';
                      }};
    const auto filas = escribirTabla(tabla, {buscarPublico(u"healthdb_secure.sqlite"_s, desde)}, a);
    return filas > 0 ? std::optional(u"Salud: %1 tipos de medición (Salud.csv)"_s.arg(filas)) : std::nullopt;
}

} // namespace vellora::Extraccion
