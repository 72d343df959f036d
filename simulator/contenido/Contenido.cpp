#include "contenido/Contenido.h"

#include "contenido/Contexto.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

void fecha(const QString &ruta, qint64 unix)
{
    const timespec momento{static_cast<time_t>(unix), 0};
    const timespec ambas[2] = {momento, momento};
    utimensat(AT_FDCWD, QFile::encodeName(ruta).constData(), ambas, 0);
}

/// Files get the dates of what they hold; the rest one of the last months, by their name; folders come last.
void ponFechas(const Contexto &c)
{
    QStringList carpetas;
    QDirIterator paseo(c.raiz, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (paseo.hasNext()) {
        const auto ruta = paseo.next();
        if (paseo.fileInfo().isDir()) {
            carpetas << ruta;
            continue;
        }
        const auto conocida = c.fechas.constFind(ruta);
        const auto propia =
            Azar(c.opciones.semilla, ruta.mid(c.raiz.size()).toUtf8().constData()).entero(600, 9'000'000);
        const bool base = ruta.contains(u".sqlite"_s) || ruta.contains(u".db"_s) || ruta.contains(u".storedata"_s);
        fecha(ruta, conocida != c.fechas.constEnd() ? *conocida : ahoraDelTelefono - (base ? propia % 7200 : propia));
    }
    for (const auto &carpeta : carpetas)
        fecha(carpeta, ahoraDelTelefono - 600);
    fecha(c.raiz, ahoraDelTelefono);
}

} // namespace

QString generarContenido(const QString &carpetaDelTelefono, const OpcionesContenido &opciones)
{
    const auto carpeta = QDir::cleanPath(carpetaDelTelefono);
    if (QFile::exists(carpeta))
        return {};
    Contexto c;
    c.opciones = opciones;
    c.raiz = QDir::cleanPath(QDir::current().absoluteFilePath(carpeta + u".tmp"_s));
    c.numeroPropio = u"+34600123456"_s;
    QDir(c.raiz).removeRecursively();
    if (!QDir().mkpath(c.raiz))
        return u"No se pudo crear la carpeta %1"_s.arg(c.raiz);
    c.gente = inventaGente(opciones);
    planeaCarrete(c);
    for (const auto hacer : {ponDatosDelTelefono, ponAplicaciones, ponCarrete, ponFotosSqlite, ponMensajes, ponWhatsApp,
                             ponLlamadas, ponBuzon, ponNotas, ponCalendario, ponRecordatorios, ponSafari, ponSalud,
                             ponAgenda, ponGrabadora, ponUsoDeRed, ponAjustes, ponClaves})
        hacer(c);
    if (!c.fallos.isEmpty()) {
        QDir(c.raiz).removeRecursively();
        return u"No se pudo generar el contenido. "_s + c.fallos.join(u"; "_s);
    }
    ponFechas(c);
    if (!QDir().rename(c.raiz, carpeta))
        return u"No se pudo dejar el contenido en %1"_s.arg(carpeta);
    return {};
}

} // namespace simulado
