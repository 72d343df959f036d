#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

class QIODevice;

namespace simulado
{

class Flujo;
class Telefono;

/// The file protocol of the backup service: the phone orders, the computer obeys and tells how it went. Binary property
/// lists, each an array that begins with the message's name; the files themselves stream between them.
/// A member that says false or gives nothing has lost the stream, or the computer refused; roto() tells which.
class EnlaceDispositivo
{
public:
    struct Respuesta {
        qint64 codigo = 0;
        QString texto;
        QVariant valor;
    };
    /// Where a downloaded file goes; null throws it away.
    using Apertura = std::function<QIODevice *(const QString &ruta)>;

    EnlaceDispositivo(Telefono &telefono, Flujo &flujo);

    bool saludar();
    std::optional<QVariantList> recibir();
    bool enviar(const QVariantList &mensaje);
    /// The end of an operation.
    bool concluir(int codigo, const QString &texto = {}, const QVariantMap &mas = {});
    bool roto() const { return roto_; }

    std::optional<quint64> espacioLibre();
    std::optional<QVariantMap> listar(const QString &carpeta);
    bool crearCarpeta(const QString &carpeta);
    bool mover(const QVariantMap &deA, double progreso);
    bool borrar(const QStringList &rutas, double progreso);

    /// Upload: one beginning, any number of files, one ending. `progreso` is the overall percentage.
    bool empezarSubida(double progreso, quint64 bytes);
    /// `enviados` is what the file really gave.
    bool subir(const QString &rutaEnTelefono, const QString &rutaEnCopia, QIODevice &origen, qint64 &enviados);
    bool vaciar(); ///< sends what small files left waiting to go together
    bool terminarSubida();
    bool subirUno(const QString &rutaEnCopia, QIODevice &origen, double progreso);

    /// Asks for files. Absent when the stream broke; a code below zero when some were missing.
    std::optional<Respuesta> descargar(const QStringList &rutas, double progreso, const Apertura &abrir);

private:
    std::optional<Respuesta> pedir(const QVariantList &orden);
    std::optional<Respuesta> leerEstado();
    bool aceptado(const std::optional<Respuesta> &respuesta) const { return respuesta && respuesta->codigo == 0; }
    bool leerNumero(quint32 &numero);
    bool leerTexto(QString &texto);
    bool recibirFichero(QIODevice *destino);
    qint64 tramoMaximo() const;
    bool romper()
    {
        roto_ = true;
        return false;
    }

    Telefono &telefono_;
    Flujo &flujo_;
    bool roto_ = false;
    QByteArray espera_; ///< small pieces of an upload, sent together
    QByteArray bloque_; ///< room for one piece of a file, with its head in front
};

} // namespace simulado
