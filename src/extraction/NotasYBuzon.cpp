#include "extraction/Extraccion.h"
#include "extraction/Renglones.h"

#include <QDirIterator>
#include <QHash>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

/// What tells the notes of the trash, by the columns that there are: the folder they lie in, or one above it, and a
/// mark of their own.
QByteArray notaEliminada(const QSet<QByteArray> &columnas)
{
    constexpr auto papelera = " OR IFNULL(ZFOLDER IN (WITH RECURSIVE tiradas(cual) AS ("
                              "SELECT Z_PK FROM ZICCLOUDSYNCINGOBJECT WHERE ZFOLDERTYPE = 1 UNION "
                              "SELECT o.Z_PK FROM ZICCLOUDSYNCINGOBJECT o JOIN tiradas ON o.ZPARENT = tiradas.cual) "
                              "SELECT cual FROM tiradas), 0)";
    QByteArray condicion("0");
    if (columnas.contains("ZMARKEDFORDELETION"))
        condicion += " OR IFNULL(ZMARKEDFORDELETION,0) <> 0";
    if (columnas.contains(QSet<QByteArray>{"Z_PK", "ZFOLDER", "ZFOLDERTYPE", "ZPARENT"}))
        condicion += papelera;
    return '(' + condicion + ')';
}

qint64 escribirNotas(const QString &base, const QString &fichero, bool eliminadas, const QString &a)
{
    const auto consulta = [eliminadas](const BaseDelTelefono &deDonde) {
        return "SELECT IFNULL(ZTITLE1,''), ZMODIFICATIONDATE1, IFNULL(ZSNIPPET,'') "
               "FROM ZICCLOUDSYNCINGOBJECT WHERE ZTITLE1 IS NOT NULL AND " +
               notaEliminada(deDonde.columnas("ZICCLOUDSYNCINGOBJECT")) + (eliminadas ? " <> 0" : " = 0");
    };
    const Tabla tabla{fichero, "TUS NOTAS\n\n", consulta, "ORDER BY ZMODIFICATIONDATE1 DESC",
                      [](QByteArray &linea, const Fila &fila) {
                          linea += "── ";
                          Renglones::ponerEnUno(linea, fila.utf8(0));
                          linea += "  (";
                          ponerFecha(linea, fila, 1);
                          linea += ")\n";
                          // Nothing that a note says begins another note.
                          if (fila.utf8(2).startsWith("──"))
                              linea += Renglones::sangria;
                          Renglones::poner(linea, fila.utf8(2));
                          linea += "\n\n";
                      }};
    return escribirTabla(tabla, {base}, a);
}

struct Buzon {
    qint64 mensajes = 0;
    qint64 audios = 0;
};

/// The list of who called and, of those that are there, the sounds, into a folder of the results.
Buzon escribirBuzon(const QString &desde, const QString &carpeta, bool eliminados, const QString &a)
{
    const auto consulta = [eliminados](const BaseDelTelefono &base) {
        const bool conPapelera = base.columnas("voicemail").contains("trashed_date");
        return "SELECT ROWID, IFNULL(sender,''), date, duration FROM voicemail WHERE " +
               QByteArray(conPapelera ? "IFNULL(trashed_date,0)" : "0") + (eliminados ? " <> 0" : " = 0");
    };
    QStringList sonidos;
    const Tabla tabla{carpeta + u"Quién llamó.txt"_s, "BUZÓN DE VOZ\n\n", consulta, "",
                      [&](QByteArray &linea, const Fila &fila) {
                          sonidos << fila.texto(0) + u".amr"_s;
                          Renglones::ponerEnUno(linea, fila.utf8(1));
                          linea += "  —  ";
                          // Unlike most of the phone's, this database counts from 1970.
                          ponerFechaUnix(linea, fila, 2);
                          linea += "  (";
                          Renglones::ponerEnUno(linea, fila.utf8(3));
                          linea += " segundos)  →  ";
                          linea += sonidos.last().toUtf8() + '\n';
                      }};
    Buzon hecho{escribirTabla(tabla, {buscarPublico(u"voicemail.db"_s, desde)}, a), 0};
    auto destino = CarpetaDeDestino::abrir(a);
    if (hecho.mensajes == 0 || !destino)
        return hecho;
    QHash<QString, QString> porNombre;
    QDirIterator recorrido(desde, {u"*.amr"_s}, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                           QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        const auto fichero = recorrido.next();
        if (!porNombre.contains(recorrido.fileName()))
            porNombre.insert(recorrido.fileName(), fichero);
    }
    for (const auto &sonido : std::as_const(sonidos)) {
        if (porNombre.contains(sonido) && copiarFichero(porNombre[sonido], *destino, carpeta + sonido))
            ++hecho.audios;
    }
    return hecho;
}

} // namespace

std::optional<QString> notas(const QString &desde, const QString &a)
{
    const auto base = buscarPublico(u"NoteStore.sqlite"_s, desde);
    const auto eliminado = QString::fromLatin1(carpetaDeLoEliminado);
    QStringList lineas;
    if (const auto filas = escribirNotas(base, u"Notas.txt"_s, false, a); filas > 0)
        lineas << u"Notas: %1 (Notas.txt)"_s.arg(filas);
    if (const auto filas = escribirNotas(base, eliminado + u"Notas.txt"_s, true, a); filas > 0)
        lineas << u"Notas eliminadas hace poco: %1 (carpeta Eliminado hace poco)"_s.arg(filas);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

std::optional<QString> buzonDeVoz(const QString &desde, const QString &a)
{
    const auto sitio = u"Buzón de voz/"_s;
    QStringList lineas;
    if (const auto hecho = escribirBuzon(desde, sitio, false, a); hecho.mensajes > 0)
        lineas << u"Buzón de voz: %1 mensajes, %2 audios guardados"_s.arg(hecho.mensajes).arg(hecho.audios);
    if (const auto hecho = escribirBuzon(desde, QString::fromLatin1(carpetaDeLoEliminado) + sitio, true, a);
        hecho.mensajes > 0)
        lineas << u"Buzón de voz, eliminados hace poco: %1 mensajes, %2 audios (carpeta Eliminado hace poco)"_s
                      .arg(hecho.mensajes)
                      .arg(hecho.audios);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

} // namespace vellora::Extraccion
