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
    const auto fechaQueVale = [](const QString &copia) {
        const auto estado = estadoDe(copia);
        return estado.clase == Clase::Entera ? estado.fecha : std::nullopt;
    };
    if (udid)
        return fechaQueVale(carpeta + u'/' + *udid);
    std::optional<QDateTime> ultima;
    QDirIterator entradas(carpeta, QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entradas.hasNext()) {
        const auto fecha = fechaQueVale(entradas.next());
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

QString haceDias(qint64 dias)
{
    if (dias < 1)
        return u"hoy"_s;
    return dias == 1 ? u"hace 1 día"_s : u"hace %1 días"_s.arg(dias);
}

std::optional<QString> aviso(const Estado &estado, const QDateTime &ahora)
{
    const auto dias = diasDesde(estado.fecha, ahora);
    switch (estado.clase) {
    case Clase::Inacabada:
        return u"La copia de seguridad de este iPhone quedó a medias y no sirve para recuperar nada. Haz una nueva."_s;
    case Clase::SinComprobar:
        return u"La copia de seguridad de este iPhone (%1) no está comprobada: no sé si está entera."_s.arg(
            haceDias(dias.value_or(0)));
    case Clase::NoHay:
    case Clase::Entera:
        break;
    }
    return aviso(dias);
}

} // namespace vellora::Catalogo
