#include "session/Carpetas.h"

#include "core/Preferencias.h"
#include "session/SinTelefono.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::Carpetas
{

namespace
{

QDir raiz()
{
    return {QDir::homePath() + u"/Vellora"_s};
}

QStringList deTelefonos()
{
    auto carpetas = raiz().entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Unsorted);
    std::sort(carpetas.begin(), carpetas.end());
    return carpetas;
}

/// The phone's name as one component of a path: never a way out of the folder, never longer than a file system takes.
QString comoNombreDeCarpeta(const QString &nombre, const QString &cola = {})
{
    const qsizetype maximoEnBytes = 255 - cola.toUtf8().size();
    auto componente = QString(nombre).replace(u'/', u'-').remove(QChar::Null);
    while (componente.toUtf8().size() > maximoEnBytes)
        componente.chop(componente.back().isLowSurrogate() ? 2 : 1);
    const bool sinNombre = componente.isEmpty() || componente == u"." || componente == u"..";
    return (sinNombre ? u"iPhone"_s : componente) + cola;
}

QString copiasDe(const QString &telefono)
{
    return raiz().filePath(telefono + u"/Copias de seguridad"_s);
}

bool esCopia(const QString &carpeta)
{
    return QFileInfo::exists(carpeta + u"/Info.plist"_s) || QFileInfo::exists(carpeta + u"/Manifest.db"_s);
}

/// The phones whose backups a folder of backups holds, by identifier.
QStringList udidsEn(const QString &copias)
{
    constexpr qsizetype largoMinimoDeUdid = 21;
    auto nombres = QDir(copias).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Name);
    nombres.removeIf(
        [&](const QString &uno) { return uno.size() < largoMinimoDeUdid || !esCopia(copias + u'/' + uno); });
    return nombres;
}

/// The folder of a phone: the one that holds its backup, whatever the phone was called then, the youngest of several.
/// Without one the folder of its name, unless that one holds the backups of another phone.
QString carpetaDe(const Dispositivo &telefono)
{
    auto suyo = comoNombreDeCarpeta(telefono.nombre);
    if (esCopia(copiasDe(suyo) + u'/' + telefono.id))
        return suyo;
    QString hallada;
    QDateTime deCuando;
    for (const auto &una : deTelefonos()) {
        const auto copia = copiasDe(una) + u'/' + telefono.id;
        const auto fecha = QFileInfo(copia).lastModified();
        if (esCopia(copia) && (hallada.isEmpty() || fecha > deCuando)) {
            hallada = una;
            deCuando = fecha;
        }
    }
    if (!hallada.isEmpty())
        return hallada;
    return udidsEn(copiasDe(suyo)).isEmpty()
               ? suyo
               : comoNombreDeCarpeta(telefono.nombre, u" (%1)"_s.arg(telefono.udidCorto()));
}

qsizetype entradas(const QString &carpeta)
{
    return QDir(carpeta).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

QString base(const std::optional<Dispositivo> &elegido)
{
    if (elegido)
        return raiz().filePath(carpetaDe(*elegido));
    if (const auto suya = SinTelefono::cual(); !suya.isEmpty())
        return raiz().filePath(suya);
    // Nobody's: a name that no folder with data has.
    return raiz().filePath(SinTelefono::conDatos().isEmpty() ? u"iPhone"_s : u".sin elegir"_s);
}

QString datos(const std::optional<Dispositivo> &elegido)
{
    const auto suya = base(elegido);
    // Older versions put the backups of two phones of one name into one folder.
    const auto telefonos = elegido ? udidsEn(suya + u"/Copias de seguridad"_s) : QStringList();
    const bool esElSegundo = elegido && telefonos.indexOf(elegido->id) > 0;
    return suya + u"/Mis datos"_s + (esElSegundo ? u" (%1)"_s.arg(elegido->udidCorto()) : QString());
}

QString claveCarpetaFotos(const std::optional<Dispositivo> &elegido)
{
    return u"carpetaFotos-"_s + (elegido ? elegido->id : u"sin-iphone"_s);
}

QString fotos(const std::optional<Dispositivo> &elegido)
{
    auto elegida = Preferencias::texto(claveCarpetaFotos(elegido));
    if (!elegida.isEmpty() && QFileInfo::exists(elegida))
        return elegida;
    const auto suyas = base(elegido) + u"/Fotos"_s;
    // Photos went by the phone's name before its backup did, and are not copied a second time for that.
    const auto porNombre = elegido ? comoNombreDeCarpeta(elegido->nombre) : QString();
    const auto otras = raiz().filePath(porNombre + u"/Fotos"_s);
    const bool enSuNombre =
        elegido && !QFileInfo::exists(suyas) && QFileInfo::exists(otras) && udidsEn(copiasDe(porNombre)).isEmpty();
    return enSuNombre ? otras : suyas;
}

QString fotosParaIA(const std::optional<Dispositivo> &elegido)
{
    const auto recuperadas = base(elegido) + u"/Fotos recuperadas"_s;
    const auto copiadas = fotos(elegido);
    return entradas(copiadas) < entradas(recuperadas) ? recuperadas : copiadas;
}

bool hayVarias()
{
    return SinTelefono::conDatos().size() > 1;
}

QStringList deCopias()
{
    QStringList carpetas;
    const auto telefonos = deTelefonos();
    for (const auto &telefono : telefonos)
        carpetas << raiz().filePath(telefono + u"/Copias de seguridad"_s);
    return carpetas;
}

} // namespace vellora::Carpetas
