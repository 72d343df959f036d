#include "session/SinTelefono.h"

#include "core/CarpetaPrivada.h"
#include "core/Preferencias.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::SinTelefono
{

namespace
{

const auto claveUltima = u"carpetaDelUltimoIPhone"_s;
const auto claveCerradas = u"carpetasCerradas"_s;

QString raiz()
{
    return QDir::homePath() + u"/Vellora"_s;
}

/// A phone's things are in folders: backups, data, photos. Empty ones tell of nobody.
bool tieneAlgo(const QString &carpeta)
{
    const auto dentro = QDir(carpeta).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::any_of(dentro.begin(), dentro.end(), [](const QFileInfo &una) {
        return !QDir(una.filePath()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot);
    });
}

} // namespace

QStringList conDatos()
{
    auto carpetas = QDir(raiz()).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    carpetas.removeIf([](const QString &una) { return una.startsWith(u'.') || !tieneAlgo(raiz() + u'/' + una); });
    std::sort(carpetas.begin(), carpetas.end());
    return carpetas;
}

QString cual()
{
    const auto hay = conDatos();
    auto ultima = Preferencias::texto(claveUltima);
    if (hay.contains(ultima))
        return ultima;
    return hay.size() == 1 ? hay.first() : QString();
}

void recordar(const QString &carpeta)
{
    if (Preferencias::texto(claveUltima) != carpeta)
        Preferencias::ponTexto(claveUltima, carpeta);
}

void cerrarALosDemas(bool tambienLoDeDentro)
{
    CarpetaPrivada::cerrar(raiz(), tambienLoDeDentro);
}

bool faltaCerrar()
{
    return !Preferencias::logico(claveCerradas);
}

void yaCerrado()
{
    Preferencias::ponLogico(claveCerradas, true);
}

} // namespace vellora::SinTelefono
