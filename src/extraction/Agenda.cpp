#include "extraction/Extraccion.h"
#include "extraction/Renglones.h"

#include <QDirIterator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

enum class Papelera { Fuera, Dentro };

/// Whether a row of the calendar tells a day and an hour without a place: whole days do, and what has no zone.
/// `tipo`: "start", "end" or "due".
QByteArray sinZona(const QSet<QByteArray> &columnas, const QByteArray &diaEntero, const QByteArray &zona)
{
    QByteArray condicion("0");
    if (columnas.contains(diaEntero))
        condicion += " OR IFNULL(" + diaEntero + ",0) <> 0";
    if (columnas.contains(zona))
        condicion += " OR IFNULL(" + zona + ",'_float') = '_float'";
    return '(' + condicion + ')';
}

Zona zonaDe(const Fila &fila, int columna)
{
    return fila.entero(columna) != 0 ? Zona::Ninguna : Zona::DelOrdenador;
}

void ponerRecordatorio(QByteArray &linea, const Fila &fila)
{
    linea += fila.utf8(1) == QByteArrayView("1") ? "[hecho] " : "[    ] ";
    Renglones::ponerEnUno(linea, fila.utf8(0));
    linea += "   ";
    ponerFecha(linea, fila, 2, zonaDe(fila, 3));
    linea += '\n';
}

/// Where older systems kept them: among the events.
QByteArray delCalendario(const BaseDelTelefono &base)
{
    const auto columnas = base.columnas("CalendarItem");
    if (!columnas.contains("due_date"))
        return {};
    const QByteArray hecho = columnas.contains("completed")         ? "completed"
                             : columnas.contains("completion_date") ? "IFNULL(completion_date,0) <> 0"
                                                                    : "0";
    constexpr auto tarea = " OR entity_type = 3";
    return "SELECT IFNULL(summary,''), " + hecho + ", due_date, " + sinZona(columnas, "due_all_day", "due_tz") +
           ", due_date AS vence FROM CalendarItem WHERE due_date IS NOT NULL" +
           (columnas.contains("entity_type") ? tarea : "");
}

/// Their own databases, one for each account, in which the table has had two names.
QByteArray deSuBase(const BaseDelTelefono &base, Papelera papelera)
{
    const bool nueva = base.hay("SELECT 1 FROM sqlite_master WHERE name = 'ZREMCDREMINDER'");
    const QByteArray tabla = nueva ? "ZREMCDREMINDER" : "ZREMCDOBJECT";
    const auto columnas = base.columnas(tabla.constData());
    const auto oNada = [&](const char *columna) {
        return QByteArray(columnas.contains(columna) ? columna : "NULL");
    };
    if (!columnas.contains("ZDUEDATE") && !columnas.contains("ZCOMPLETED"))
        return {};
    const auto hecho =
        columnas.contains("ZCOMPLETED") ? QByteArray("ZCOMPLETED") : "IFNULL(" + oNada("ZCOMPLETIONDATE") + ",0) <> 0";
    QByteArray tirado = "IFNULL(" + oNada("ZMARKEDFORDELETION") + ",0) <> 0";
    if (columnas.contains("ZLIST") && base.columnas("ZREMCDBASELIST").contains("ZMARKEDFORDELETION"))
        tirado += " OR IFNULL(ZLIST IN (SELECT Z_PK FROM ZREMCDBASELIST WHERE ZMARKEDFORDELETION <> 0), 0)";
    return "SELECT COALESCE(" + oNada("ZTITLE1") + ',' + oNada("ZTITLE") + ",''), " + hecho + ", " + oNada("ZDUEDATE") +
           ", " + sinZona(columnas, "ZALLDAY", "ZTIMEZONE") + ", " + oNada("ZDUEDATE") + " AS vence FROM " + tabla +
           " WHERE (" + tirado + (papelera == Papelera::Dentro ? ")" : ") = 0") +
           (nueva ? "" : " AND Z_ENT = (SELECT Z_ENT FROM Z_PRIMARYKEY WHERE Z_NAME = 'REMCDReminder')");
}

/// "Data-*.sqlite" of the reminders, in a fixed order.
QStringList basesDeRecordatorios(const QString &desde)
{
    QStringList bases;
    QDirIterator recorrido(desde, {u"Data-*.sqlite"_s}, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                           QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        if (const auto fichero = recorrido.next(); fichero.contains("/Container_v1/Stores/"_L1))
            bases << fichero;
    }
    bases.sort();
    return bases;
}

} // namespace

std::optional<QString> calendario(const QString &desde, const QString &a)
{
    const auto consulta = [](const BaseDelTelefono &base) {
        const auto columnas = base.columnas("CalendarItem");
        const auto zonaDelFin =
            columnas.contains(QSet<QByteArray>{"start_tz", "end_tz"}) ? "COALESCE(end_tz,start_tz)" : "start_tz";
        auto alFinal = sinZona(columnas, "all_day", "start_tz");
        alFinal.replace("start_tz", zonaDelFin);
        // The place of an event stands in another table and is left blank.
        return "SELECT IFNULL(summary,''), start_date, end_date, '', " + sinZona(columnas, "all_day", "start_tz") +
               ", " + alFinal + " FROM CalendarItem WHERE summary IS NOT NULL";
    };
    const Tabla tabla{u"Calendario.csv"_s, "Título;Empieza;Termina;Dónde\n", consulta, "ORDER BY start_date DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          ponerCampo(linea, fila, 0);
                          linea += ';';
                          ponerFecha(linea, fila, 1, zonaDe(fila, 4));
                          linea += ';';
                          ponerFecha(linea, fila, 2, zonaDe(fila, 5));
                          linea += ';';
                          ponerCampo(linea, fila, 3);
                          linea += '\n';
                      }};
    const auto filas = escribirTabla(tabla, {buscarPublico(u"Calendar.sqlitedb"_s, desde)}, a);
    return filas > 0 ? std::optional(u"Calendario: %1 citas (Calendario.csv)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> recordatorios(const QString &desde, const QString &a)
{
    const auto suyas = basesDeRecordatorios(desde);
    const auto sacar = [&](Papelera papelera, const QString &carpeta) {
        const auto consulta = [papelera](const BaseDelTelefono &base) {
            auto deAntes = papelera == Papelera::Fuera ? delCalendario(base) : QByteArray();
            return deAntes.isEmpty() ? deSuBase(base, papelera) : deAntes;
        };
        const Tabla tabla{carpeta + u"Recordatorios.txt"_s, "TUS RECORDATORIOS\n\n", consulta, "ORDER BY vence DESC",
                          &ponerRecordatorio};
        return escribirTabla(tabla, suyas + QStringList{buscarPublico(u"Calendar.sqlitedb"_s, desde)}, a);
    };
    QStringList lineas;
    if (const auto filas = sacar(Papelera::Fuera, {}); filas > 0)
        lineas << u"Recordatorios: %1 (Recordatorios.txt)"_s.arg(filas);
    if (const auto filas = sacar(Papelera::Dentro, QString::fromLatin1(carpetaDeLoEliminado)); filas > 0)
        lineas << u"Recordatorios eliminados hace poco: %1 (carpeta Eliminado hace poco)"_s.arg(filas);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

} // namespace vellora::Extraccion
