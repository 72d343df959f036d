#pragma once

#include "core/Resultado.h"

#include <QByteArray>
#include <QString>

#include <unordered_map>
#include <utility>

namespace vellora
{

/// A descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int elNumero = -1) : numero(elNumero) {}
    Descriptor(Descriptor &&otro) noexcept : numero(std::exchange(otro.numero, -1)) {}
    Descriptor &operator=(Descriptor &&otro) noexcept
    {
        std::swap(numero, otro.numero);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor();

    int operator*() const { return numero; }
    explicit operator bool() const { return numero >= 0; }

private:
    int numero;
};

/// A folder that results are written into. Names come from outside: nothing leaves it, and no link inside it is
/// followed. A file is written under a working name and only then takes its own. One thread for each object; several
/// may stand for one folder.
class CarpetaDeDestino
{
public:
    /// Makes the folder when it is missing, for the owner alone.
    static Resultado<CarpetaDeDestino> abrir(const QString &ruta);

    /// True for a relative path that stays inside whatever it is joined to, in UTF-8 and no longer than a file system
    /// takes, and that takes no name of a working file.
    static bool esSegura(QByteArrayView relativa);
    /// ".vellora-parcial-RANDOM-N", which no other object, program or computer uses; left over only when the machine or
    /// the program was ended.
    QByteArray nombreDeTrabajo(int numero) const { return trabajos + QByteArray::number(numero); }

    /// An empty file under the working name of that number. Invalid when it cannot be made.
    Descriptor nuevo(int numero) const;
    /// The same file again, to write on at its end.
    Descriptor seguir(int numero) const;
    /// The same, to read what was written so far.
    Descriptor releer(int numero) const;
    /// Makes the working file a second name of that file's bytes, on the same volume: no room, no time.
    bool nuevoEnlaceDe(const QString &fichero, int numero) const;
    /// Gives the working file its own name, making the folders on the way and replacing a file of that name.
    bool colocar(int numero, const QByteArray &relativa);
    enum class Sitio { Suyo, Ocupado, Negado };
    /// The same, but never over another file: with `Ocupado` the working file stays as it was; with `Negado` too, and
    /// errno tells why.
    Sitio colocarSiCabe(int numero, const QByteArray &relativa);
    /// Opens a file of the folder to read; invalid when there is none, or it is a link.
    Descriptor leer(const QByteArray &relativa);
    /// Puts on the disk what was written here. False when some of it could not be.
    bool asentar() const;
    void desechar(int numero) const;

    /// Removes the working files that runs left behind when they were ended: all of them when nobody has the folder
    /// open to write here, those older than a day where that cannot be told. Call it before `abrir`.
    static void limpiar(const QString &ruta);

    /// Bytes that the owner may still write here; absent when it cannot be told.
    std::optional<qint64> libres() const;
    const QString &ruta() const { return ruta_; }

private:
    static constexpr auto principioDeTrabajo = ".vellora-parcial-";

    CarpetaDeDestino(QString laRuta, Descriptor laRaiz);
    Sitio colocarSinCambiarNombre(int numero, int suya, const QByteArray &nombre) const;
    /// Descriptor of a folder inside, made when missing; -1 when something else or a link stands in its way.
    int carpeta(const QByteArray &relativa);

    QString ruta_;
    QByteArray trabajos; ///< how the names of its working files begin
    Descriptor raiz;     ///< holds a shared lock as long as it is open, where the disk knows them
    std::unordered_map<std::string, Descriptor> abiertas; ///< folders used of late
};

} // namespace vellora
