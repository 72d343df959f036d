#include "extraction/Extraccion.h"

#include <QDirIterator>
#include <QHash>

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

/// Name of a kind of measurement in the health database (its column data_type).
QByteArray medicion(const QByteArray &codigo)
{
    static const QHash<QByteArray, QByteArray> nombres{
        {"7", "Pasos"},  {"8", "Distancia caminando"}, {"12", "Calorías"}, {"3", "Peso"}, {"5", "Frecuencia cardiaca"},
        {"63", "Sueño"}, {"9", "Pisos subidos"}};
    return nombres.value(codigo, "Tipo " + codigo);
}

const auto visitas = Tabla{u"History.db"_s,
                           u"Safari - historial.csv"_s,
                           "Fecha;Título;Dirección\n",
                           "SELECT i.url, IFNULL(v.title,''), v.visit_time "
                           "FROM history_visits v JOIN history_items i ON i.id = v.history_item",
                           "ORDER BY v.visit_time DESC LIMIT 5000",
                           [](QByteArray &linea, const Fila &fila) {
                               ponerFecha(linea, fila, 2);
                               linea += ';';
                               ponerCampo(linea, fila, 1);
                               linea += ';';
                               ponerCampo(linea, fila, 0);
                               linea += '\n';
                           }};

const auto marcadores = Tabla{u"Bookmarks.db"_s,
                              u"Safari - marcadores.txt"_s,
                              "TUS MARCADORES DE SAFARI\n\n",
                              "SELECT IFNULL(title,''), IFNULL(url,'') FROM bookmarks "
                              "WHERE url IS NOT NULL AND url <> ''",
                              "ORDER BY title",
                              [](QByteArray &linea, const Fila &fila) {
                                  ponerTexto(linea, fila, 0);
                                  linea += "\n    ";
                                  ponerTexto(linea, fila, 1);
                                  linea += "\n\n";
                              }};

} // namespace

std::optional<QString> llamadas(const QString &desde, const QString &a)
{
    const Tabla tabla{u"CallHistory.storedata"_s,
                      u"Llamadas.csv"_s,
                      "Número;Fecha;Sentido;Duración (segundos)\n",
                      "SELECT IFNULL(ZADDRESS,''), ZDATE, ZORIGINATED, ZDURATION FROM ZCALLRECORD",
                      "ORDER BY ZDATE DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          ponerTexto(linea, fila, 0);
                          linea += ';';
                          ponerFecha(linea, fila, 1);
                          linea += esUno(fila, 2) ? ";Saliente;" : ";Entrante;";
                          linea += segundos(fila, 3) + '\n';
                      }};
    const auto filas = escribirTabla(tabla, desde, a);
    return filas > 0 ? std::optional(u"Llamadas: %1 registradas (Llamadas.csv)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> notas(const QString &desde, const QString &a)
{
    const Tabla tabla{u"NoteStore.sqlite"_s,
                      u"Notas.txt"_s,
                      "TUS NOTAS\n\n",
                      "SELECT IFNULL(ZTITLE1,''), ZMODIFICATIONDATE1, IFNULL(ZSNIPPET,'') "
                      "FROM ZICCLOUDSYNCINGOBJECT WHERE ZTITLE1 IS NOT NULL",
                      "ORDER BY ZMODIFICATIONDATE1 DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          linea += "── ";
                          ponerTexto(linea, fila, 0);
                          linea += "  (";
                          ponerFecha(linea, fila, 1);
                          linea += ")\n";
                          ponerTexto(linea, fila, 2);
                          linea += "\n\n";
                      }};
    const auto filas = escribirTabla(tabla, desde, a);
    return filas > 0 ? std::optional(u"Notas: %1 (Notas.txt)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> calendario(const QString &desde, const QString &a)
{
    // The place of an event stands in another table and is left blank.
    const Tabla tabla{u"Calendar.sqlitedb"_s,
                      u"Calendario.csv"_s,
                      "Título;Empieza;Termina;Dónde\n",
                      "SELECT IFNULL(summary,''), start_date, end_date, '' FROM CalendarItem WHERE summary IS NOT NULL",
                      "ORDER BY start_date DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          ponerCampo(linea, fila, 0);
                          linea += ';';
                          ponerFecha(linea, fila, 1);
                          linea += ';';
                          ponerFecha(linea, fila, 2);
                          linea += ';';
                          ponerCampo(linea, fila, 3);
                          linea += '\n';
                      }};
    const auto filas = escribirTabla(tabla, desde, a);
    return filas > 0 ? std::optional(u"Calendario: %1 citas (Calendario.csv)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> recordatorios(const QString &desde, const QString &a)
{
    const Tabla tabla{u"Calendar.sqlitedb"_s,
                      u"Recordatorios.txt"_s,
                      "TUS RECORDATORIOS\n\n",
                      "SELECT IFNULL(summary,''), completed, due_date FROM CalendarItem WHERE due_date IS NOT NULL",
                      "ORDER BY due_date DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          linea += esUno(fila, 1) ? "[hecho] " : "[    ] ";
                          ponerTexto(linea, fila, 0);
                          linea += "   ";
                          ponerFecha(linea, fila, 2);
                          linea += '\n';
                      }};
    const auto filas = escribirTabla(tabla, desde, a);
    return filas > 0 ? std::optional(u"Recordatorios: %1 (Recordatorios.txt)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> safari(const QString &desde, const QString &a)
{
    QStringList partes;
    if (const auto filas = escribirTabla(visitas, desde, a); filas > 0)
        partes << u"historial (%1 visitas)"_s.arg(filas);
    if (const auto filas = escribirTabla(marcadores, desde, a); filas > 0)
        partes << u"marcadores (%1)"_s.arg(filas);
    return partes.isEmpty() ? std::nullopt : std::optional(u"Safari: "_s + partes.join(u", "_s));
}

std::optional<QString> salud(const QString &desde, const QString &a)
{
    const Tabla tabla{u"healthdb_secure.sqlite"_s,
                      u"Salud.csv"_s,
                      "Qué;Cuántas mediciones;Desde;Hasta\n",
                      "SELECT data_type, COUNT(*), MIN(start_date), MAX(start_date) FROM samples GROUP BY data_type",
                      "ORDER BY COUNT(*) DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          linea += medicion(fila.utf8(0).toByteArray()) + ';';
                          ponerTexto(linea, fila, 1);
                          linea += ';';
                          ponerFecha(linea, fila, 2);
                          linea += ';';
                          ponerFecha(linea, fila, 3);
                          linea += '\n';
                      }};
    const auto filas = escribirTabla(tabla, desde, a);
    return filas > 0 ? std::optional(u"Salud: %1 tipos de medición (Salud.csv)"_s.arg(filas)) : std::nullopt;
}

std::optional<QString> buzonDeVoz(const QString &desde, const QString &a)
{
    QStringList audios;
    const Tabla tabla{u"voicemail.db"_s,
                      u"Buzón de voz/Quién llamó.txt"_s,
                      "BUZÓN DE VOZ\n\n",
                      "SELECT ROWID, IFNULL(sender,''), date, duration FROM voicemail",
                      "",
                      [&](QByteArray &linea, const Fila &fila) {
                          audios << fila.texto(0) + u".amr"_s;
                          ponerTexto(linea, fila, 1);
                          linea += "  —  ";
                          ponerFecha(linea, fila, 2);
                          linea += "  (";
                          ponerTexto(linea, fila, 3);
                          linea += " segundos)  →  ";
                          linea += audios.last().toUtf8() + '\n';
                      }};
    const auto filas = escribirTabla(tabla, desde, a);
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (filas == 0 || !carpeta)
        return {};
    QHash<QString, QString> porNombre;
    QDirIterator recorrido(desde, {u"*.amr"_s}, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                           QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        const auto fichero = recorrido.next();
        if (!porNombre.contains(recorrido.fileName()))
            porNombre.insert(recorrido.fileName(), fichero);
    }
    qint64 guardados = 0;
    for (const auto &audio : std::as_const(audios)) {
        if (porNombre.contains(audio) && copiarFichero(porNombre[audio], *carpeta, u"Buzón de voz/"_s + audio))
            ++guardados;
    }
    return u"Buzón de voz: %1 mensajes, %2 audios guardados"_s.arg(filas).arg(guardados);
}

} // namespace vellora::Extraccion
