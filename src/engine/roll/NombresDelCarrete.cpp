#include "engine/roll/NombresDelCarrete.h"

#include "core/CarpetaDeDestino.h"
#include "engine/device/Afc.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr qsizetype largoLlano = 200;

const auto principioDelCarrete = u"/DCIM/"_s;
const auto principioDeRetoques = u"/PhotoData/Mutations/DCIM/"_s;
const auto principioDeFuera = u"/PhotoData/CPLAssets/"_s;
const auto principioDeRetoquesDeFuera = u"/PhotoData/Mutations/PhotoData/CPLAssets/"_s;
// The folder of the computer for what the phone keeps outside of the roll.
const auto carpetaDeFuera = u"CPLAssets/"_s;
constexpr QByteArrayView deFuera("CPLAssets/");
constexpr QByteArrayView finDeRetoque("_E");

/// "IMG_0001" and an edit of it: "IMG_E0001".
QString nombreDeRetoque(const QString &original)
{
    static const QRegularExpression conPrefijo(u"^([A-Z]{3}_)(\\d.*)$"_s);
    const auto partes = conPrefijo.match(original);
    return partes.hasMatch() ? partes.captured(1) + u'E' + partes.captured(2) : original + u"_E"_s;
}

/// Of "100APPLE/IMG_0001/Adjustments/FullSizeRender.heic".
std::optional<QString> sitioDeRetoque(const QString &relativa)
{
    const auto partes = relativa.split(u'/');
    if (partes.size() != 4 || partes[2] != "Adjustments"_L1)
        return {};
    if (partes[3] == "Adjustments.plist"_L1)
        return partes[0] + u'/' + partes[1] + u".AAE"_s;
    const auto punto = partes[3].lastIndexOf(u'.');
    if (punto < 0 || QStringView(partes[3]).first(punto) != u"FullSizeRender")
        return {};
    return partes[0] + u'/' + nombreDeRetoque(partes[1]) + partes[3].sliced(punto).toUpper();
}

QByteArray parteLlana(const QByteArray &parte)
{
    if (parte.isEmpty() || parte == "." || parte == "..")
        return parte;
    auto texto = QString::fromUtf8(parte);
    for (auto &letra : texto) {
        if (letra < u' ' || letra == QChar::ReplacementCharacter || QStringView(u"<>:\"|?*\\\x7f").contains(letra))
            letra = u'_';
    }
    while (texto.endsWith(u'.') || texto.endsWith(u' '))
        texto.chop(1);
    const auto punto = texto.lastIndexOf(u'.');
    auto fin = punto > 0 && texto.size() - punto <= 8 ? texto.sliced(punto) : QString();
    auto tronco = texto.chopped(fin.size());
    while (tronco.toUtf8().size() > largoLlano)
        tronco.chop(tronco.back().isLowSurrogate() ? 2 : 1);
    if (const auto llana = (tronco + fin).toUtf8(); llana == parte)
        return parte;
    const auto suma = QCryptographicHash::hash(parte, QCryptographicHash::Sha256).toHex().first(8);
    return tronco.toUtf8() + '~' + suma + fin.toUtf8();
}

} // namespace

std::optional<QByteArray> sitioLocal(const QString &ruta)
{
    std::optional<QString> relativa;
    if (ruta.startsWith(principioDelCarrete))
        relativa = ruta.sliced(principioDelCarrete.size());
    else if (ruta.startsWith(principioDeRetoques))
        relativa = sitioDeRetoque(ruta.sliced(principioDeRetoques.size()));
    else if (ruta.startsWith(principioDeFuera))
        relativa = carpetaDeFuera + ruta.sliced(principioDeFuera.size());
    else if (ruta.startsWith(principioDeRetoquesDeFuera)) {
        relativa = sitioDeRetoque(ruta.sliced(principioDeRetoquesDeFuera.size()));
        if (relativa)
            relativa->prepend(carpetaDeFuera);
    }
    if (!relativa)
        return {};
    auto bytes = bytesDeRuta(*relativa);
    if (!CarpetaDeDestino::esSegura(bytes))
        bytes = nombreLlano(bytes);
    return CarpetaDeDestino::esSegura(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

bool seGuardaFuera(const QString &ruta)
{
    return ruta.startsWith(principioDeFuera) || ruta.startsWith(principioDeRetoquesDeFuera);
}

QByteArray nombreLlano(const QByteArray &relativa)
{
    auto partes = relativa.split('/');
    std::transform(partes.begin(), partes.end(), partes.begin(), parteLlana);
    return partes.join('/');
}

QByteArray otroNombre(const QByteArray &relativa, int vez)
{
    if (vez == 1)
        return relativa;
    const auto punto = relativa.lastIndexOf('.');
    const auto corte = punto > relativa.lastIndexOf('/') + 1 ? punto : relativa.size();
    return relativa.first(corte) + " (" + QByteArray::number(vez) + ')' + relativa.sliced(corte);
}

QByteArray elementoDe(QByteArrayView relativa)
{
    static const QRegularExpression retoque(u"^([A-Z]{3}_)[EO](\\d.*)$"_s);
    const auto barra = relativa.lastIndexOf('/');
    auto nombre = QString::fromUtf8(relativa.sliced(barra + 1));
    nombre.truncate(nombre.lastIndexOf(u'.') < 0 ? nombre.size() : nombre.lastIndexOf(u'.'));
    nombre.replace(retoque, u"\\1\\2"_s);
    if (relativa.startsWith(deFuera) && nombre.endsWith("_E"_L1))
        nombre.chop(2);
    return relativa.first(barra + 1).toByteArray() + nombre.toUtf8();
}

bool esRetoque(QByteArrayView relativa)
{
    static const QRegularExpression retoque(u"^[A-Z]{3}_E\\d"_s);
    const auto nombre = relativa.sliced(relativa.lastIndexOf('/') + 1);
    const auto tronco = nombre.first(std::max<qsizetype>(nombre.lastIndexOf('.'), 0));
    return retoque.match(QString::fromUtf8(nombre)).hasMatch() ||
           (relativa.startsWith(deFuera) && tronco.endsWith(finDeRetoque));
}

TipoDeFichero tipoDe(QByteArrayView relativa)
{
    const auto fin = relativa.sliced(relativa.lastIndexOf('.') + 1).toByteArray().toUpper();
    if (fin == "AAE")
        return TipoDeFichero::Ajustes;
    return fin == "MOV" || fin == "MP4" || fin == "M4V" || fin == "3GP" ? TipoDeFichero::Video : TipoDeFichero::Foto;
}

} // namespace vellora::motor
