#include "engine/backup/LlaveroDeCopia.h"

#include "core/Plist.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <nettle/gcm.h>
#include <nettle/memops.h>
#include <openssl/asn1.h>
#include <openssl/crypto.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr quint32 versionDeElemento = 3;
constexpr quint32 mascaraDeClase = 0xF;

const uint8_t *octetos(QByteArrayView bytes)
{
    return reinterpret_cast<const uint8_t *>(bytes.data());
}

/// AES-256-GCM with an initial vector of no length and the check at the end, which libcrypto does not take. Absent when
/// the check fails.
std::optional<QByteArray> descifrarGcm(const Clave &clave, QByteArrayView cifrado)
{
    if (cifrado.size() < GCM_DIGEST_SIZE)
        return {};
    const auto texto = cifrado.chopped(GCM_DIGEST_SIZE);
    gcm_aes256_ctx contexto;
    gcm_aes256_set_key(&contexto, clave.bytes());
    gcm_aes256_set_iv(&contexto, 0, nullptr);
    QByteArray claro(texto.size(), Qt::Uninitialized);
    gcm_aes256_decrypt(&contexto, static_cast<size_t>(texto.size()), reinterpret_cast<uint8_t *>(claro.data()),
                       octetos(texto));
    std::array<uint8_t, GCM_DIGEST_SIZE> comprobacion{};
    gcm_aes256_digest(&contexto, comprobacion.size(), comprobacion.data());
    OPENSSL_cleanse(&contexto, sizeof contexto);
    const bool bien = memeql_sec(comprobacion.data(), octetos(cifrado.last(GCM_DIGEST_SIZE)), GCM_DIGEST_SIZE) != 0;
    return bien ? std::optional(claro) : std::nullopt;
}

/// The next value of a row of DER: its tag, its bytes, and what comes after it.
struct ValorDer {
    int etiqueta;
    QByteArrayView bytes;
    QByteArrayView resto;
};
std::optional<ValorDer> siguiente(QByteArrayView der)
{
    const auto *aqui = octetos(der);
    long largo = 0;
    int etiqueta = 0;
    int clase = 0;
    constexpr int mal = 0x80;
    constexpr int sinFin = 0x01;
    if (der.isEmpty() || (ASN1_get_object(&aqui, &largo, &etiqueta, &clase, der.size()) & (mal | sinFin)) != 0)
        return {};
    const auto cabecera = aqui - octetos(der);
    return ValorDer{etiqueta, der.sliced(cabecera, largo), der.sliced(cabecera + largo)};
}

/// One item: version and class (four bytes each, little-endian; the class in the low bits), length of the wrapped key,
/// the key, and the ciphered attributes. Absent when it cannot be opened.
std::optional<QByteArray> abrirElemento(QByteArrayView datos, const ClavesDeClase &claves)
{
    constexpr qsizetype cabecera = 12;
    if (datos.size() < cabecera)
        return {};
    const auto version = qFromLittleEndian<quint32>(datos.data());
    const auto clase = qFromLittleEndian<quint32>(datos.data() + 4) & mascaraDeClase;
    const auto largo = qFromLittleEndian<quint32>(datos.data() + 8);
    if (version != versionDeElemento || largo > datos.size() - cabecera)
        return {};
    const auto clave = claves.abrir(clase, datos.sliced(cabecera, largo));
    return clave ? descifrarGcm(*clave, datos.sliced(cabecera + largo)) : std::nullopt;
}

/// Absent for what nobody could type.
std::optional<QString> comoTexto(QByteArrayView bytes)
{
    QStringDecoder lector(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString texto = lector(bytes);
    const bool deControl = std::any_of(texto.begin(), texto.end(), [](QChar letra) {
        return letra.category() == QChar::Other_Control && letra != u'\n' && letra != u'\t';
    });
    return lector.hasError() || deControl ? std::nullopt : std::optional(texto);
}

QString campo(const QList<std::pair<QByteArray, QByteArray>> &atributos, const char *nombre)
{
    for (const auto &[suyo, valor] : atributos) {
        if (suyo == nombre)
            return comoTexto(valor).value_or(QString());
    }
    return {};
}

ClaveDelLlavero claveDe(const QList<std::pair<QByteArray, QByteArray>> &atributos, bool deWeb)
{
    const auto cuenta = campo(atributos, "acct");
    const auto servicio = campo(atributos, deWeb ? "srvr" : "svce");
    if (!deWeb && servicio == u"AirPort")
        return {u"wifi"_s, cuenta, {}, {}};
    return {deWeb ? u"internet"_s : u"app"_s, servicio.isEmpty() ? campo(atributos, "agrp") : servicio, cuenta, {}};
}

void leerElemento(QByteArrayView datos, bool deWeb, const ClavesDeClase &claves, LlaveroAbierto &abierto)
{
    auto claro = abrirElemento(datos, claves);
    if (!claro) {
        ++abierto.cerradas;
        return;
    }
    const auto atributos = atributosDe(*claro);
    const auto secreto =
        std::find_if(atributos.begin(), atributos.end(), [](const auto &uno) { return uno.first == "v_Data"; });
    auto nueva = claveDe(atributos, deWeb);
    const auto texto = secreto == atributos.end() ? std::nullopt : comoTexto(secreto->second);
    if (atributos.isEmpty())
        ++abierto.cerradas;
    else if (!texto || texto->isEmpty() || nueva.donde.isEmpty())
        ++abierto.sinTexto;
    else {
        nueva.clave = *texto;
        abierto.claves << nueva;
    }
    OPENSSL_cleanse(claro->data(), static_cast<size_t>(claro->size()));
}

} // namespace

QList<std::pair<QByteArray, QByteArray>> atributosDe(QByteArrayView der)
{
    QList<std::pair<QByteArray, QByteArray>> atributos;
    const auto conjunto = siguiente(der);
    if (!conjunto || conjunto->etiqueta != V_ASN1_SET)
        return atributos;
    for (auto pareja = siguiente(conjunto->bytes); pareja; pareja = siguiente(pareja->resto)) {
        const auto nombre = pareja->etiqueta == V_ASN1_SEQUENCE ? siguiente(pareja->bytes) : std::nullopt;
        const auto valor = nombre ? siguiente(nombre->resto) : std::nullopt;
        if (valor && (valor->etiqueta == V_ASN1_UTF8STRING || valor->etiqueta == V_ASN1_OCTET_STRING))
            atributos.append({nombre->bytes.toByteArray(), valor->bytes.toByteArray()});
    }
    return atributos;
}

std::optional<LlaveroAbierto> abrirLlavero(const QByteArray &plist, const ClavesDeClase &claves)
{
    const auto arbol = Plist::interpretar(plist);
    if (!arbol)
        return {};
    LlaveroAbierto abierto;
    for (const bool deWeb : {false, true}) {
        const auto tabla = arbol->raiz()[deWeb ? "inet" : "genp"];
        for (quint32 i = 0; i < tabla.tamano(); ++i) {
            if (const auto datos = tabla.en(i)["v_Data"].datos())
                leerElemento(*datos, deWeb, claves, abierto);
        }
    }
    return abierto;
}

} // namespace vellora::motor
