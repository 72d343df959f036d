#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <optional>
#include <sys/stat.h>

namespace simulado
{

/// Status numbers of the file service, as its clients name them.
enum EstadoAfc : quint64 {
    AfcBien = 0,
    AfcDesconocido = 1,
    AfcArgumentoMalo = 7,
    AfcNoExiste = 8,
    AfcEsCarpeta = 9,
    AfcProhibido = 10,
    AfcYaExiste = 16,
    AfcSinSitio = 18,
    AfcOcupado = 19,
    AfcErrorDeDisco = 20,
    AfcNoVacia = 33,
};

EstadoAfc estadoDeErrno(int error);

/// A folder that stands for the root of a file system: no path, with ".." or through links, reaches outside of it.
class RaizAfc
{
public:
    explicit RaizAfc(const QByteArray &carpeta);
    ~RaizAfc();
    RaizAfc(const RaizAfc &) = delete;
    RaizAfc &operator=(const RaizAfc &) = delete;

    /// A descriptor, or -1 with errno.
    int abrir(const QByteArray &ruta, int opciones) const;
    /// Names with "." and ".."; absent with errno.
    std::optional<QByteArrayList> listar(const QByteArray &ruta) const;
    bool ficha(const QByteArray &ruta, struct stat &ficha) const;
    /// When the file was made, in nanoseconds since 1970; absent where the computer's disk does not keep it.
    std::optional<qint64> nacimiento(const QByteArray &ruta) const;
    QByteArray destinoDeEnlace(const QByteArray &ruta) const;

    // Each says false with errno.
    bool crearCarpeta(const QByteArray &ruta) const; ///< with its parents; one that exists is no failure
    bool borrar(const QByteArray &ruta) const;
    bool borrarArbol(const QByteArray &ruta) const;
    bool renombrar(const QByteArray &desde, const QByteArray &a) const;
    bool enlazar(const QByteArray &destino, const QByteArray &ruta, bool simbolico) const;
    bool ponerFecha(const QByteArray &ruta, quint64 nanosegundos) const;

private:
    struct Padre;
    Padre padreDe(const QByteArray &ruta) const;
    bool vaciar(int carpeta) const;

    int raiz_;
};

} // namespace simulado
