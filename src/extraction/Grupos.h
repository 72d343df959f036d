#pragma once

#include "core/EscritorDeTexto.h"
#include "extraction/NombresDistintos.h"

#include <QByteArray>
#include <QHash>

#include <list>
#include <memory>
#include <vector>

namespace vellora::Extraccion
{

/// Lines that belong to many conversations and come in any order, each conversation into a text file of its own: lines
/// joined by a line feed, with none after the last. Memory grows with the number of conversations only.
class Grupos
{
public:
    /// `laCarpetaRelativa`: where the files go, under the folder. `elPrimero`: of the numbers of its working files; two
    /// sets of groups at once must not share any.
    Grupos(CarpetaDeDestino &laCarpeta, const QByteArray &laCarpetaRelativa, int elPrimero = 0)
        : carpeta(laCarpeta), carpetaRelativa(laCarpetaRelativa), primero(elPrimero)
    {
    }

    /// Gives a conversation its file name before others may take it.
    void reservar(const QByteArray &clave, const QByteArray &nombre);
    /// `clave` tells conversations apart; `nombre` is what the file is called when it is met first: "NAME.txt", or
    /// "NAME (2).txt" where another conversation has that.
    void linea(const QByteArray &clave, const QByteArray &nombre, const QByteArray &texto);

    struct Total {
        qint64 filas = 0;
        qint64 grupos = 0;
    };
    /// Puts the files in their places; with `enteros` false they tell only a part, and files that are there stay. What
    /// an earlier file told and is no longer on the phone is kept beside it. Gives what could be written.
    Total cerrar(bool enteros = true);

private:
    struct Grupo {
        QByteArray fichero;
        std::unique_ptr<EscritorDeTexto> escritor; ///< none before the first line
        qint64 filas = 0;
    };
    size_t numeroDe(const QByteArray &clave, const QByteArray &nombre);
    Grupo &buscar(const QByteArray &clave, const QByteArray &nombre);

    CarpetaDeDestino &carpeta;
    QByteArray carpetaRelativa;
    int primero;
    NombresDistintos nombres;
    std::vector<Grupo> grupos;
    QHash<QByteArray, size_t> porClave;
    std::list<size_t> abiertos; ///< the most recent one first
    QByteArray ultima;
    size_t cualUltima = 0;
};

} // namespace vellora::Extraccion
