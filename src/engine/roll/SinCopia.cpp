#include "engine/roll/SinCopia.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// Listed and alive, but without a file.
qint64 sinFichero(BaseDeFotos base, const std::vector<FicheroDelCarrete> &ficheros)
{
    for (const auto &fichero : ficheros)
        base.erase(fichero.relativa.toStdString());
    return std::count_if(base.begin(), base.end(),
                         [](const auto &una) { return una.second != EstadoDeFoto::Papelera; });
}

} // namespace

SinCopia contarSinCopia(const ListaDeFotos &lista, const Carrete &carrete)
{
    SinCopia cuenta;
    cuenta.soloICloud = sinFichero(lista.delCarrete, carrete.ficheros) + sinFichero(lista.deFuera, carrete.aparte);
    cuenta.compartidas = lista.compartidas;
    cuenta.sincronizadas = lista.sincronizadas;
    cuenta.deOtrosSitios = lista.deOtrosSitios;
    cuenta.albumesCompartidos = lista.albumesCompartidos;
    cuenta.aparte = static_cast<qint64>(carrete.aparte.size());
    return cuenta;
}

QStringList SinCopia::frases() const
{
    QStringList frases;
    if (soloICloud > 0)
        frases << u"%1 de tus fotos no están en el iPhone: solo las tiene iCloud. Para traerlas, en el iPhone abre "
                  "Ajustes, Fotos, elige «Descargar y conservar originales» y copia otra vez cuando acabe."_s.arg(
                      soloICloud);
    if (compartidas > 0) {
        const auto cuales =
            albumesCompartidos.isEmpty() ? QString() : u" («%1»)"_s.arg(albumesCompartidos.join(u"», «"_s));
        frases << u"Fotos de álbumes compartidos%1 que no se copian: %2. Las que quieras conservar, guárdalas en el "
                  "carrete desde la app Fotos."_s.arg(cuales)
                      .arg(compartidas);
    }
    if (sincronizadas > 0)
        frases << u"Fotos que un ordenador pasó a este iPhone y que no se copian: %1. Sus originales están en ese "
                  "ordenador."_s.arg(sincronizadas);
    if (deOtrosSitios > 0)
        frases << u"Fotos que la app Fotos enseña de otras apps y que no se copian: %1. Las que quieras conservar, "
                  "guárdalas en el carrete."_s.arg(deOtrosSitios);
    return frases;
}

std::optional<QString> SinCopia::alQuitarLaLista() const
{
    const auto cuantas = soloICloud + compartidas + sincronizadas + deOtrosSitios + aparte;
    if (cuantas == 0)
        return {};
    return u"La lista de la app Fotos habla también de fotos que se quedan como están (%1: de iCloud, de álbumes "
           "compartidos o guardadas fuera del carrete). Si se quita la lista, el iPhone tiene que volver a "
           "encontrarlas, "
           "y las que no encuentre dejarán de verse en él."_s.arg(cuantas);
}

QString alQuitarLaLista(Afc &afc, const Carrete &carrete)
{
    const auto lista = leerListaDeFotos(afc);
    return lista ? contarSinCopia(*lista, carrete).alQuitarLaLista().value_or(QString()) : QString();
}

} // namespace vellora::motor
