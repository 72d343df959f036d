#include "backups/Catalogo.h"

#include "backups/Comprobante.h"
#include "core/Plist.h"

#include <QDirIterator>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora::Catalogo
{

namespace
{

constexpr qint64 diasParaAvisar = 14;
constexpr qsizetype largoMinimoDeUdid = 21;

} // namespace

Estado estadoDe(const QString &copia)
{
    const auto fecha = fechaDe(copia);
    if (!fecha)
        return {};
    if (const auto veredicto = Comprobante::leer(copia)) {
        const bool entera = *veredicto == ComprobacionDeCopia::Veredicto::Entera;
        return {entera ? Clase::Entera : Clase::SinComprobar, fecha};
    }
    const auto estado = Plist::leer(copia + u"/Status.plist"_s);
    const auto dicho = estado ? estado->raiz()["SnapshotState"].texto() : std::nullopt;
    const bool inacabada = !QFileInfo::exists(copia + u"/Manifest.db"_s) || (dicho && *dicho != u"finished"_s);
    return {inacabada ? Clase::Inacabada : Clase::SinComprobar, fecha};
}

std::optional<QDateTime> fechaDe(const QString &copia)
{
    for (const auto &nombre : {u"/Manifest.db"_s, u"/Info.plist"_s}) {
        const auto fecha = QFileInfo(copia + nombre).lastModified();
        if (fecha.isValid())
            return fecha;
    }
    return {};
}

std::optional<QDateTime> fechaDeLaUltimaCopia(const QString &carpeta, const std::optional<QString> &udid)
{
    if (udid) {
        if (auto fecha = fechaDe(carpeta + u'/' + *udid))
            return fecha;
    }
    std::optional<QDateTime> ultima;
    QDirIterator entradas(carpeta, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entradas.hasNext()) {
        const auto fecha = fechaDe(entradas.next());
        if (fecha && (!ultima || *fecha > *ultima))
            ultima = fecha;
    }
    return ultima;
}

std::optional<qint64> diasDesde(const std::optional<QDateTime> &fecha, const QDateTime &ahora)
{
    if (!fecha)
        return {};
    const auto desde = fecha->toLocalTime();
    const auto hasta = ahora.toLocalTime();
    // By the calendar: a day of 23 or 25 hours is a day.
    const auto dias = desde.date().daysTo(hasta.date());
    if (dias > 0 && hasta.time() < desde.time())
        return dias - 1;
    return dias < 0 && hasta.time() > desde.time() ? dias + 1 : dias;
}

std::optional<QString> udidDeLaCopia(const QString &carpeta)
{
    QDirIterator entradas(carpeta, QDir::AllEntries | QDir::NoDotAndDotDot);
    while (entradas.hasNext()) {
        entradas.next();
        const auto nombre = entradas.fileName();
        if (nombre.size() >= largoMinimoDeUdid && !nombre.startsWith(u'.'))
            return nombre;
    }
    return {};
}

std::optional<QString> aviso(std::optional<qint64> dias)
{
    if (!dias)
        return u"No tienes ninguna copia de seguridad de este iPhone. Si se pierde o se rompe, pierdes "
               "mensajes, WhatsApp, contactos y notas."_s;
    if (*dias < diasParaAvisar)
        return {};
    return u"La última copia de seguridad es de hace %1 días."_s.arg(*dias);
}

} // namespace vellora::Catalogo
