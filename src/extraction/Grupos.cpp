#include "extraction/Grupos.h"

#include "core/Vuelta.h"
#include "extraction/MensajesDeAntes.h"

namespace vellora::Extraccion
{

namespace
{

// Far below the 1,024 descriptors of a process, and four megabytes of text that waits.
constexpr size_t maximoDeAbiertos = 64;

} // namespace

size_t Grupos::numeroDe(const QByteArray &clave, const QByteArray &nombre)
{
    if (const auto conocido = porClave.constFind(clave); conocido != porClave.cend())
        return *conocido;
    const auto cual = grupos.size();
    porClave.insert(clave, cual);
    grupos.push_back({carpetaRelativa + '/' + nombres.tomar(nombre, ".txt"), {}, 0});
    return cual;
}

void Grupos::reservar(const QByteArray &clave, const QByteArray &nombre)
{
    numeroDe(clave, nombre);
}

Grupos::Grupo &Grupos::buscar(const QByteArray &clave, const QByteArray &nombre)
{
    if (cualUltima < grupos.size() && grupos[cualUltima].escritor && clave == ultima)
        return grupos[cualUltima];
    const auto cual = numeroDe(clave, nombre);
    auto &suyo = grupos[cual];
    if (!suyo.escritor)
        suyo.escritor = std::make_unique<EscritorDeTexto>(carpeta, suyo.fichero, primero + static_cast<int>(cual));
    abiertos.remove(cual);
    abiertos.push_front(cual);
    if (abiertos.size() > maximoDeAbiertos) {
        grupos[abiertos.back()].escritor->soltar();
        abiertos.pop_back();
    }
    ultima = clave;
    cualUltima = cual;
    return suyo;
}

void Grupos::linea(const QByteArray &clave, const QByteArray &nombre, const QByteArray &texto)
{
    auto &suyo = buscar(clave, nombre);
    if (suyo.filas > 0)
        *suyo.escritor << QByteArrayView("\n");
    *suyo.escritor << texto;
    ++suyo.filas;
}

Grupos::Total Grupos::cerrar(bool enteros)
{
    Total total;
    const int otro = primero + static_cast<int>(grupos.size());
    for (auto &grupo : grupos) {
        if (!grupo.escritor)
            continue;
        if (enteros && !guardarMensajesDeAntes(carpeta, *grupo.escritor, otro)) {
            Vuelta::sinEscribir(grupo.fichero);
            continue;
        }
        if (!grupo.escritor->cerrar(enteros))
            continue;
        total.filas += grupo.filas;
        ++total.grupos;
    }
    return total;
}

} // namespace vellora::Extraccion
