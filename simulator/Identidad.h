#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <memory>

using SSL_CTX = struct ssl_ctx_st;

namespace simulado
{

/// The keys and certificates that phone and computer trust each other with. Made once per contents folder (RSA 2048 is
/// slow to make) and kept in files of mode 0600. Immutable after cargar(), so any thread may use it.
class Identidad
{
public:
    Identidad();
    ~Identidad();

    /// Reads the folder, or fills it the first time. Returns an error sentence, or empty.
    QString cargar(const QString &carpeta);

    SSL_CTX *contexto() const { return contexto_.get(); }
    /// The phone's key in the PKCS#1 PEM form that a computer asks for when it pairs.
    const QByteArray &clavePublica() const { return clavePublica_; }
    const QByteArray &buid() const { return buid_; }
    /// A whole pair record for the phone, as a computer that was already trusted would have kept it.
    QVariantMap registro(const QString &udid, const QString &wifi) const;
    static QByteArray bolsaDeCustodia(const QString &udid);

private:
    struct LiberaContexto {
        void operator()(SSL_CTX *contexto) const;
    };
    QString prepararContexto();

    std::unique_ptr<SSL_CTX, LiberaContexto> contexto_;
    QByteArray clavePublica_;
    QByteArray claveRaiz_, certificadoRaiz_;
    QByteArray claveEquipo_, certificadoEquipo_;
    QByteArray claveTelefono_, certificadoTelefono_;
    QByteArray buid_;
};

/// A version-4 shaped identifier fixed by its seed text.
QString uuidDe(const QByteArray &semilla);

} // namespace simulado
