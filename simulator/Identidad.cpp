#include "Identidad.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QUuid>

#include <openssl/bio.h>
#include <openssl/encoder.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

struct Libera {
    void operator()(EVP_PKEY *p) const { EVP_PKEY_free(p); }
    void operator()(X509 *p) const { X509_free(p); }
    void operator()(BIO *p) const { BIO_free(p); }
    void operator()(OSSL_ENCODER_CTX *p) const { OSSL_ENCODER_CTX_free(p); }
};
template <typename T> using Propio = std::unique_ptr<T, Libera>;

QByteArray contenidoDe(BIO *bio)
{
    char *datos = nullptr;
    const long largo = BIO_get_mem_data(bio, &datos);
    return QByteArray(datos, largo);
}

Propio<BIO> memoria(const QByteArray &bytes = {})
{
    return Propio<BIO>(bytes.isEmpty() ? BIO_new(BIO_s_mem()) : BIO_new_mem_buf(bytes.constData(), int(bytes.size())));
}

Propio<EVP_PKEY> leerClave(const QByteArray &pem)
{
    return Propio<EVP_PKEY>(PEM_read_bio_PrivateKey(memoria(pem).get(), nullptr, nullptr, nullptr));
}

Propio<X509> leerCertificado(const QByteArray &pem)
{
    return Propio<X509>(PEM_read_bio_X509(memoria(pem).get(), nullptr, nullptr, nullptr));
}

QByteArray clavePem(EVP_PKEY *clave)
{
    const auto bio = memoria();
    PEM_write_bio_PrivateKey(bio.get(), clave, nullptr, nullptr, 0, nullptr, nullptr);
    return contenidoDe(bio.get());
}

QByteArray publicaPkcs1(EVP_PKEY *clave)
{
    const Propio<OSSL_ENCODER_CTX> contexto(
        OSSL_ENCODER_CTX_new_for_pkey(clave, EVP_PKEY_PUBLIC_KEY, "PEM", "type-specific", nullptr));
    const auto bio = memoria();
    OSSL_ENCODER_to_bio(contexto.get(), bio.get());
    return contenidoDe(bio.get());
}

/// Certificate for `clave`, signed by `claveFirma`. Ten years, no names: the phone's kind carry none.
QByteArray certificar(EVP_PKEY *clave, EVP_PKEY *claveFirma, long serie, bool esRaiz)
{
    constexpr long diezAnos = 10L * 365 * 24 * 3600;
    const Propio<X509> certificado(X509_new());
    X509_set_version(certificado.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificado.get()), serie);
    X509_gmtime_adj(X509_getm_notBefore(certificado.get()), -24 * 3600);
    X509_gmtime_adj(X509_getm_notAfter(certificado.get()), diezAnos);
    X509_set_pubkey(certificado.get(), clave);
    X509_EXTENSION *extension =
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_basic_constraints, esRaiz ? "critical,CA:TRUE" : "critical,CA:FALSE");
    X509_add_ext(certificado.get(), extension, -1);
    X509_EXTENSION_free(extension);
    X509_sign(certificado.get(), claveFirma, EVP_sha256());
    const auto bio = memoria();
    PEM_write_bio_X509(bio.get(), certificado.get());
    return contenidoDe(bio.get());
}

bool guardarPrivado(const QString &ruta, const QByteArray &bytes)
{
    QSaveFile fichero(ruta);
    return fichero.open(QIODevice::WriteOnly) && fichero.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
           fichero.write(bytes) == bytes.size() && fichero.commit();
}

QByteArray leerTodo(const QString &ruta)
{
    QFile fichero(ruta);
    return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray();
}

} // namespace

Identidad::Identidad() = default;
Identidad::~Identidad() = default;

void Identidad::LiberaContexto::operator()(SSL_CTX *contexto) const
{
    SSL_CTX_free(contexto);
}

QString Identidad::cargar(const QString &carpeta)
{
    if (!QDir().mkpath(carpeta))
        return u"No se puede crear %1"_s.arg(carpeta);
    struct Pieza {
        QString nombre;
        QByteArray &clave;
        QByteArray &certificado;
        long serie;
    };
    const Pieza piezas[] = {{carpeta + "/raiz"_L1, claveRaiz_, certificadoRaiz_, 1},
                            {carpeta + "/equipo"_L1, claveEquipo_, certificadoEquipo_, 2},
                            {carpeta + "/telefono"_L1, claveTelefono_, certificadoTelefono_, 3}};
    for (const Pieza &pieza : piezas) {
        pieza.clave = leerTodo(pieza.nombre + ".clave.pem"_L1);
        pieza.certificado = leerTodo(pieza.nombre + ".certificado.pem"_L1);
        if (!pieza.clave.isEmpty() && !pieza.certificado.isEmpty())
            continue;
        const Propio<EVP_PKEY> clave(EVP_RSA_gen(2048));
        if (!clave)
            return u"No se pueden crear las claves"_s;
        pieza.clave = clavePem(clave.get());
        pieza.certificado = certificar(clave.get(), leerClave(claveRaiz_).get(), pieza.serie, pieza.serie == 1);
        if (!guardarPrivado(pieza.nombre + ".clave.pem"_L1, pieza.clave) ||
            !guardarPrivado(pieza.nombre + ".certificado.pem"_L1, pieza.certificado))
            return u"No se pueden guardar las claves en %1"_s.arg(carpeta);
    }
    buid_ = uuidDe(certificadoEquipo_).toLatin1();
    clavePublica_ = publicaPkcs1(leerClave(claveTelefono_).get());
    return prepararContexto();
}

QString Identidad::prepararContexto()
{
    contexto_.reset(SSL_CTX_new(TLS_server_method()));
    SSL_CTX_set_min_proto_version(contexto_.get(), TLS1_2_VERSION);
    // Tickets would be stray bytes on a stream that may go back to plain.
    SSL_CTX_set_num_tickets(contexto_.get(), 0);
    const auto clave = leerClave(claveTelefono_);
    const auto certificado = leerCertificado(certificadoTelefono_);
    if (SSL_CTX_use_PrivateKey(contexto_.get(), clave.get()) != 1 ||
        SSL_CTX_use_certificate(contexto_.get(), certificado.get()) != 1)
        return u"Las claves guardadas no son válidas"_s;
    return {};
}

QVariantMap Identidad::registro(const QString &udid, const QString &wifi) const
{
    return {{u"HostID"_s, uuidDe(buid_ + udid.toUtf8())},
            {u"SystemBUID"_s, QString::fromLatin1(buid_)},
            {u"DeviceCertificate"_s, certificadoTelefono_},
            {u"HostCertificate"_s, certificadoEquipo_},
            {u"HostPrivateKey"_s, claveEquipo_},
            {u"RootCertificate"_s, certificadoRaiz_},
            {u"RootPrivateKey"_s, claveRaiz_},
            {u"EscrowBag"_s, bolsaDeCustodia(udid)},
            {u"WiFiMACAddress"_s, wifi}};
}

QByteArray Identidad::bolsaDeCustodia(const QString &udid)
{
    return QCryptographicHash::hash("bolsa" + udid.toUtf8(), QCryptographicHash::Sha256);
}

QString uuidDe(const QByteArray &semilla)
{
    return QUuid::createUuidV5(QUuid(), semilla).toString(QUuid::WithoutBraces).toUpper();
}

} // namespace simulado
