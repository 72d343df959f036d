#include "extraction/Grupos.h"

#include <QCryptographicHash>

#include <algorithm>

namespace vellora::Extraccion
{

namespace
{

// Far below the 1,024 descriptors of a process, and four megabytes of text that waits.
constexpr size_t maximoDeAbiertos = 64;
constexpr qsizetype largoDeNombre = 255; // bytes, of the common file systems
constexpr qsizetype largoCorto = 200;

} // namespace

QByteArray Grupos::fichero(const QByteArray &grupo)
{
    auto nombre = grupo;
    nombre.replace('/', '-');
    if (nombre.size() + 4 > largoDeNombre) {
        const auto huella = QCryptographicHash::hash(grupo, QCryptographicHash::Sha1).toHex().first(8);
        auto corte = largoCorto;
        while ((static_cast<unsigned char>(nombre[corte]) & 0xC0U) == 0x80U)
            --corte; // not inside a character
        nombre = nombre.first(corte) + '~' + huella;
    }
    return nombre + ".txt";
}

Grupos::Grupo &Grupos::buscar(const QByteArray &nombre)
{
    if (!grupos.empty() && nombre == ultimo)
        return grupos[cualUltimo];
    const auto conocido = porNombre.constFind(nombre);
    const auto cual = conocido == porNombre.cend() ? grupos.size() : *conocido;
    if (cual == grupos.size()) {
        porNombre.insert(nombre, cual);
        grupos.push_back({std::make_unique<EscritorDeTexto>(carpeta, carpetaRelativa + '/' + fichero(nombre),
                                                            static_cast<int>(cual)),
                          0});
    }
    abiertos.remove(cual);
    abiertos.push_front(cual);
    if (abiertos.size() > maximoDeAbiertos) {
        grupos[abiertos.back()].escritor->soltar();
        abiertos.pop_back();
    }
    ultimo = nombre;
    cualUltimo = cual;
    return grupos[cual];
}

void Grupos::linea(const QByteArray &grupo, const QByteArray &texto)
{
    auto &suyo = buscar(grupo);
    if (suyo.filas > 0)
        *suyo.escritor << QByteArrayView("\n");
    *suyo.escritor << texto;
    ++suyo.filas;
}

Grupos::Total Grupos::cerrar()
{
    Total total;
    for (auto &grupo : grupos) {
        if (!grupo.escritor->cerrar())
            continue;
        total.filas += grupo.filas;
        ++total.grupos;
    }
    return total;
}

} // namespace vellora::Extraccion
