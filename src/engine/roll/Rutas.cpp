#include "engine/roll/Rutas.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

int conElTelefono(const QString &udid, Avisos &avisar, const std::function<int(Conexiones &)> &hacer, size_t conexiones)
{
    const auto telefono = Telefono::buscar(udid);
    if (!telefono)
        return avisar.error(telefono.motivo());
    auto abiertas = Conexiones::abrir(*telefono, conexiones);
    return abiertas ? hacer(*abiertas) : avisar.error(abiertas.motivo());
}

int conElCarrete(const QString &udid, Avisos &avisar, const std::function<int(Conexiones &, const Carrete &)> &hacer)
{
    return conElTelefono(udid, avisar, [&](Conexiones &conexiones) {
        const auto carrete = leerCarrete(conexiones);
        if (!carrete)
            return avisar.error(carrete.motivo());
        for (const auto &problema : carrete->problemas)
            avisar.linea(problema);
        return hacer(conexiones, *carrete);
    });
}

Resultado<QStringList> leerRutas(const QString &fichero, RutasAdmitidas cuales)
{
    QFile lista(fichero);
    if (!lista.open(QIODevice::ReadOnly))
        return Resultado<QStringList>::fallo(u"No puedo leer la lista de fotos elegidas."_s);
    QStringList rutas;
    while (!lista.atEnd()) {
        auto linea = lista.readLine();
        if (linea.endsWith('\n'))
            linea.chop(1);
        if (linea.isEmpty())
            continue;
        const auto ruta = QString::fromUtf8(linea);
        if (!sitioLocal(ruta) || (cuales == RutasAdmitidas::LasQueSeBorran && seGuardaFuera(ruta)))
            return Resultado<QStringList>::fallo(u"Eso no es una foto del carrete: "_s + ruta);
        rutas << ruta;
    }
    rutas.removeDuplicates();
    return rutas;
}

RutasBuscadas buscarRutas(Conexiones &conexiones, const QStringList &rutas)
{
    RutasBuscadas buscadas;
    auto &afc = conexiones.primera();
    for (const auto &ruta : rutas) {
        const auto ficha = afc.ficha(ruta);
        if (ficha && ficha->tipo == FichaAfc::Tipo::Fichero) {
            buscadas.ficheros.push_back({ruta, *sitioLocal(ruta), *ficha});
            continue;
        }
        buscadas.negados += ficha || !afc.faltaba() ? 1 : 0;
        buscadas.perdidos.emplace_back(ruta, ficha ? u"no es una foto"_s : ficha.motivo());
    }
    return buscadas;
}

} // namespace vellora::motor
