#pragma once

#include "core/CarpetaDeDestino.h"

#include <QByteArray>
#include <QString>

namespace vellora
{

/// A text file that is written as it comes: into a working file, which takes its own name once everything is on the
/// disk. Until then an earlier file of that name stays as it was. One thread.
class EscritorDeTexto
{
public:
    /// `relativa`: path under the folder, which must outlive the writer. `numero`: of the working file.
    EscritorDeTexto(CarpetaDeDestino &laCarpeta, QByteArray laRelativa, int elNumero = 0);
    EscritorDeTexto(const EscritorDeTexto &) = delete;
    EscritorDeTexto &operator=(const EscritorDeTexto &) = delete;
    /// What was not closed is thrown away.
    ~EscritorDeTexto();

    /// UTF-8. Failures are kept for `cerrar`.
    EscritorDeTexto &operator<<(QByteArrayView bytes);

    /// Lets go of the descriptor for a while; the next text opens it again.
    void soltar();
    bool abierto() const { return bool(fichero); }
    /// True when the file stands under its name, whole. With `entero` false it tells only a part of what there is: a
    /// file that is there already then stays, and this one goes beside it as "NAME (a medias)".
    bool cerrar(bool entero = true);
    /// Puts on the disk what was written so far and opens it to read; invalid when some of it could not be written.
    Descriptor releer();
    const QByteArray &nombre() const { return relativa; }
    /// "FOLDER/NAME.txt" and what stands behind the name as "FOLDER/NAME BEHIND.txt", shortened to what fits.
    static QByteArray conCola(const QByteArray &relativa, const QByteArray &cola);

private:
    void vaciar();
    bool colocar(bool entero);

    CarpetaDeDestino &carpeta;
    QByteArray relativa;
    int numero;
    Descriptor fichero;
    QByteArray espera;
    bool bien = true;
    bool colocado = false;
};

/// Adds text of the phone as it may stand in a file: bytes that are no UTF-8, and zeros, become the replacement
/// character.
void ponerTextoLimpio(QByteArray &a, QByteArrayView bytes);

} // namespace vellora
