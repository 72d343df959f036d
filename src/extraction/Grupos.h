#pragma once

#include "core/EscritorDeTexto.h"

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
    /// `laCarpetaRelativa`: where the files go, under the folder.
    Grupos(CarpetaDeDestino &laCarpeta, const QByteArray &laCarpetaRelativa)
        : carpeta(laCarpeta), carpetaRelativa(laCarpetaRelativa)
    {
    }

    void linea(const QByteArray &grupo, const QByteArray &texto);

    struct Total {
        qint64 filas = 0;
        qint64 grupos = 0;
    };
    /// Puts the files in their places, in the order in which the groups were first met, so that of two with one file
    /// name the later stays. Gives what could be written.
    Total cerrar();

    /// "NAME.txt": each "/" becomes "-". What no file system takes is shortened, and told apart by a digest.
    static QByteArray fichero(const QByteArray &grupo);

private:
    struct Grupo {
        std::unique_ptr<EscritorDeTexto> escritor;
        qint64 filas = 0;
    };
    Grupo &buscar(const QByteArray &nombre);

    CarpetaDeDestino &carpeta;
    QByteArray carpetaRelativa;
    std::vector<Grupo> grupos;
    QHash<QByteArray, size_t> porNombre;
    std::list<size_t> abiertos; ///< the most recent one first
    QByteArray ultimo;
    size_t cualUltimo = 0;
};

} // namespace vellora::Extraccion
