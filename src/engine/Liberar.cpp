#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/roll/BaseDeFotos.h"
#include "engine/roll/Copiadas.h"
#include "engine/roll/Huella.h"
#include "engine/roll/ListaDeBorradas.h"
#include "engine/roll/Rutas.h"

#include <QStorageInfo>

#include <map>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// One photo as a person sees it, with all its files, and where each stands on the computer.
struct Elemento {
    std::vector<const FicheroDelCarrete *> ficheros;
    std::vector<QByteArray> copias; ///< relative, in the same order
    qint64 bytes() const
    {
        qint64 suma = 0;
        for (const auto *fichero : ficheros)
            suma += fichero->ficha.tamano;
        return suma;
    }
};

struct PlanDeLiberar {
    std::vector<Elemento> elementos; ///< those that may go
    qint64 ficheros = 0;
    qint64 seQuedan = 0; ///< files
    qint64 bytes = 0;
};

/// A photo may go when each of its files seems to be in the folder; the proof comes right before deleting it.
PlanDeLiberar planear(const Carrete &carrete, const Copiadas &copiadas)
{
    struct EnCurso {
        Elemento elemento;
        bool entero = true;
    };
    std::map<QByteArray, EnCurso> elementos;
    for (const auto &fichero : carrete.ficheros) {
        auto &suyo = elementos[elementoDe(fichero.relativa)];
        const auto copia = copiadas.juzgar(fichero);
        suyo.entero = suyo.entero && copia.juicio != Copiadas::Juicio::Falta;
        suyo.elemento.ficheros.push_back(&fichero);
        suyo.elemento.copias.push_back(copia.relativa);
    }
    PlanDeLiberar plan;
    for (auto &[clave, suyo] : elementos) {
        const auto cuantos = static_cast<qint64>(suyo.elemento.ficheros.size());
        if (!suyo.entero) {
            plan.seQuedan += cuantos;
            continue;
        }
        plan.ficheros += cuantos;
        plan.bytes += suyo.elemento.bytes();
        plan.elementos.push_back(std::move(suyo.elemento));
    }
    return plan;
}

struct CuentaDeLiberar {
    qint64 borrados = 0;
    qint64 liberados = 0; ///< bytes
};

void contarElFin(const CuentaDeLiberar &cuenta, qint64 quedan, bool listaBorrada, Avisos &avisar)
{
    avisar.avisar(u"fin"_s, {{u"borrados"_s, cuenta.borrados},
                             {u"liberados"_s, cuenta.liberados},
                             {u"quedan_en_carrete"_s, quedan},
                             {u"lista_borrada"_s, listaBorrada}});
}

/// Proves copies and takes their photos off the phone.
class Liberador
{
public:
    Liberador(Afc &suAfc, Copiadas &lasCopiadas, CarpetaDeDestino &laCarpeta, ListaDeBorradas &laLista)
        : afc(suAfc), copiadas(lasCopiadas), carpeta(laCarpeta), lista(laLista)
    {
    }

    CuentaDeLiberar cuenta;

    /// Why a file of the photo has no proven copy, or could not be deleted; absent when the whole photo has gone.
    std::optional<QString> liberar(const Elemento &elemento)
    {
        std::vector<QByteArray> huellas;
        for (size_t i = 0; i < elemento.ficheros.size(); ++i) {
            auto huella = probar(*elemento.ficheros[i], elemento.copias[i]);
            if (!huella)
                return huella.motivo();
            huellas.push_back(*std::move(huella));
        }
        for (size_t i = 0; i < elemento.ficheros.size(); ++i) {
            const auto &fichero = *elemento.ficheros[i];
            auto motivo = afc.borrar(fichero.ruta);
            if (motivo && afc.faltaba())
                continue; // deleted on the phone meanwhile
            if (motivo)
                return motivo;
            ++cuenta.borrados;
            cuenta.liberados += fichero.ficha.tamano;
            if (!lista.apuntar(fichero, elemento.copias[i], huellas[i]))
                return u"No puedo apuntar lo que borro en la carpeta de las fotos."_s;
        }
        return {};
    }

private:
    /// The digest of both the phone's file and its copy, which are the same this very moment.
    Resultado<QByteArray> probar(const FicheroDelCarrete &fichero, const QByteArray &relativa)
    {
        const auto no = [](const QString &motivo) {
            return Resultado<QByteArray>::fallo(motivo);
        };
        const auto ahora = afc.ficha(fichero.ruta);
        if (!ahora)
            return no(ahora.motivo());
        if (*ahora != fichero.ficha)
            return no(u"ha cambiado en el iPhone"_s);
        const auto copia = carpeta.leer(relativa);
        struct stat como = {};
        if (!copia || fstat(*copia, &como) != 0 || !S_ISREG(como.st_mode) || como.st_size != fichero.ficha.tamano)
            return no(u"su copia ya no está entera"_s);
        const auto local = huellaDe(*copia);
        if (!local)
            return no(u"su copia no se puede leer"_s);
        const auto anotada = copiadas.huella(fichero);
        auto delTelefono = anotada ? Resultado(*anotada) : huellaDelTelefono(fichero);
        if (!delTelefono)
            return delTelefono;
        if (*delTelefono != *local)
            return no(u"su copia no es igual"_s);
        // Only what is on the disk outlives the phone's own.
        if (fsync(*copia) != 0)
            return no(u"su copia no se puede asegurar en el disco"_s);
        return *local;
    }
    Resultado<QByteArray> huellaDelTelefono(const FicheroDelCarrete &fichero)
    {
        Huella huella;
        const auto leidos = afc.leer(fichero.ruta, fichero.ficha, [&](QByteArrayView trozo) {
            huella.poner(trozo);
            return !Interrupcion::pedida();
        });
        if (!leidos || *leidos != fichero.ficha.tamano)
            return Resultado<QByteArray>::fallo(leidos ? u"se ha parado"_s : leidos.motivo());
        auto suma = huella.sacar();
        return suma.isEmpty() ? Resultado<QByteArray>::fallo(u"no se puede comprobar"_s) : Resultado(std::move(suma));
    }

    Afc &afc;
    Copiadas &copiadas;
    CarpetaDeDestino &carpeta;
    ListaDeBorradas &lista;
};

/// A phone can be seen as a folder too (gvfs, ifuse): what stands there is no copy of it.
bool estaEnOtroAparato(const QString &carpeta)
{
    const auto tipo = QStorageInfo(carpeta).fileSystemType();
    return tipo == "fuse.gvfsd-fuse" || tipo == "fuse.ifuse";
}

/// Photos still in the roll; absent when the phone cannot be asked.
std::optional<qint64> quedanEnElCarrete(Conexiones &conexiones)
{
    const auto carrete = leerCarrete(conexiones);
    return carrete ? std::optional(contarElementos(*carrete)) : std::nullopt;
}

int borrar(const PlanDeLiberar &plan, Conexiones &conexiones, Copiadas &copiadas, const QString &destino,
           Avisos &avisar)
{
    if (estaEnOtroAparato(destino))
        return avisar.error(u"La carpeta de las fotos está en otro aparato y no en este Mac: podría ser el propio "
                            "iPhone. No borro nada."_s);
    auto carpeta = CarpetaDeDestino::abrir(destino);
    if (!carpeta)
        return avisar.error(carpeta.motivo());
    // Names of files that were copied or moved a moment ago may not be on the disk yet.
    if (!carpeta->asentar())
        return avisar.error(u"El disco de las fotos no responde bien. No borro nada."_s);
    auto lista = ListaDeBorradas::abrir(destino);
    if (!lista)
        return avisar.error(lista.motivo());
    auto &afc = conexiones.primera();
    Liberador liberador(afc, copiadas, *carpeta, *lista);
    qint64 fallos = 0;
    for (const auto &elemento : plan.elementos) {
        if (Interrupcion::pedida() || afc.perdido())
            break;
        if (const auto motivo = liberador.liberar(elemento); motivo && !Interrupcion::pedida()) {
            ++fallos;
            avisar.linea(
                u"Dejo en el iPhone %1: %2."_s.arg(QString::fromUtf8(elemento.ficheros.front()->relativa), *motivo));
        }
        avisar.progreso(liberador.cuenta.borrados, {{u"bytes"_s, liberador.cuenta.liberados}});
    }
    avisar.avisar(u"progreso"_s, {{u"hechos"_s, liberador.cuenta.borrados}, {u"bytes"_s, liberador.cuenta.liberados}});
    // Once some have gone, the app's list tells of photos that are no more, also when the owner stops here.
    const bool listaBorrada = liberador.cuenta.borrados > 0 && !afc.perdido() && borrarBaseDeFotos(afc);
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    const auto quedan = afc.perdido() ? std::nullopt : quedanEnElCarrete(conexiones);
    if (!quedan)
        return avisar.error(
            u"El iPhone ha dejado de responder cuando iban %1 archivos borrados. Lo borrado está a "
            "salvo en la carpeta de las fotos. Mira el cable y vuelve a intentarlo."_s.arg(liberador.cuenta.borrados));
    contarElFin(liberador.cuenta, *quedan, listaBorrada, avisar);
    return fallos == 0 ? 0 : 1;
}

} // namespace

int liberar(const QStringList &argumentos, Avisos &avisar)
{
    return conElCarrete(argumentos[0], avisar, [&](Conexiones &conexiones, const Carrete &carrete) {
        auto copiadas = Copiadas::leer(argumentos[1], argumentos[0]);
        const auto plan = planear(carrete, copiadas);
        avisar.avisar(u"plan"_s,
                      {{u"a_borrar"_s, plan.ficheros}, {u"se_quedan"_s, plan.seQuedan}, {u"bytes"_s, plan.bytes}});
        if (confirmado() && !plan.elementos.empty())
            return borrar(plan, conexiones, copiadas, argumentos[1], avisar);
        if (confirmado())
            contarElFin({}, contarElementos(carrete), false, avisar);
        return 0;
    });
}

} // namespace vellora::motor
