#include "session/Carpetas.h"

#include "core/Preferencias.h"
#include "session/SinTelefono.h"

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
QString comoNombreDeCarpeta(const QString &nombre)
{
    constexpr qsizetype maximoEnBytes = 255;
    auto componente = QString(nombre).replace(u'/', u'-').remove(QChar::Null);
    while (componente.toUtf8().size() > maximoEnBytes)
        componente.chop(componente.back().isLowSurrogate() ? 2 : 1);
    const bool sinNombre = componente.isEmpty() || componente == u"." || componente == u"..";
    return sinNombre ? u"iPhone"_s : componente;
}

qsizetype entradas(const QString &carpeta)
{
    return QDir(carpeta).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

QString base(const std::optional<Dispositivo> &elegido)
{
    if (elegido)
        return raiz().filePath(comoNombreDeCarpeta(elegido->nombre));
    if (const auto suya = SinTelefono::cual(); !suya.isEmpty())
        return raiz().filePath(suya);
    // Nobody's: a name that no folder with data has.
    return raiz().filePath(SinTelefono::conDatos().isEmpty() ? u"iPhone"_s : u".sin elegir"_s);
}

QString datos(const std::optional<Dispositivo> &elegido)
{
    return base(elegido) + u"/Mis datos"_s;
}

QString claveCarpetaFotos(const std::optional<Dispositivo> &elegido)
{
    return u"carpetaFotos-"_s + (elegido ? elegido->id : u"sin-iphone"_s);
}

QString fotos(const std::optional<Dispositivo> &elegido)
{
    const auto elegida = Preferencias::texto(claveCarpetaFotos(elegido));
    return !elegida.isEmpty() && QFileInfo::exists(elegida) ? elegida : base(elegido) + u"/Fotos"_s;
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
