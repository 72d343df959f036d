#include "engine/roll/Copiador.h"

#include "core/Formato.h"
#include "engine/Interrupcion.h"
#include "engine/roll/Colocacion.h"
#include "engine/roll/FicheroLocal.h"
#include "engine/roll/Huella.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Putting files on the disk one by one would take longer than reading them: they wait for each other, so many or so
// long, and are named together.
constexpr size_t ficherosDelLote = 200;
constexpr qint64 bytesDelLote = 256LL * 1024 * 1024;
// From here on the owner is told how far one single file is.
constexpr qint64 ficheroLargo = 64LL * 1024 * 1024;

const auto sinSitio =
    u"No cabe en el disco del Mac. Libera espacio y vuelve a intentarlo: lo que ya está copiado no se repite."_s;
const auto noSeEscribe =
    u"No puedo escribir en la carpeta de las fotos. Mira que el disco siga conectado y que tenga sitio."_s;

QString motivoDeEscritura(int error)
{
    return error == ENOSPC || error == EDQUOT ? sinSitio : noSeEscribe;
}

/// What all threads of a copy share.
class Comun
{
public:
    Comun(const std::vector<FicheroDelCarrete> &losFicheros, const Copiador::Avance &suAvance,
          const Copiador::Queja &suQueja)
        : ficheros(losFicheros), avance(suAvance), queja(suQueja)
    {
    }

    const std::vector<FicheroDelCarrete> &ficheros;
    const Copiador::Avance &avance;
    const Copiador::Queja &queja;
    std::atomic<size_t> siguiente = 0;
    std::atomic<bool> parada = false;
    std::mutex mutex;
    CuentaDeCopia cuenta;
    std::optional<QString> motivo;

    void parar(const QString &por)
    {
        const std::lock_guard cerrojo(mutex);
        if (!motivo)
            motivo = por;
        parada = true;
    }
    void contar(qint64 CuentaDeCopia::*que, const FicheroDelCarrete &fichero)
    {
        const std::lock_guard cerrojo(mutex);
        ++(cuenta.*que);
        if (toca())
            avance(cuenta, QString::fromUtf8(fichero.relativa));
    }
    void fallar(const FicheroDelCarrete &fichero, const QString &por)
    {
        const std::lock_guard cerrojo(mutex);
        ++cuenta.fallos;
        queja(QString::fromUtf8(fichero.relativa), por);
    }
    /// Something that was counted as brought turned out to be otherwise.
    void corregir(qint64 CuentaDeCopia::*que)
    {
        const std::lock_guard cerrojo(mutex);
        --cuenta.copiados;
        ++(cuenta.*que);
    }
    void recibido(const FicheroDelCarrete &fichero, qint64 bytes, qint64 deEste)
    {
        const std::lock_guard cerrojo(mutex);
        cuenta.bytes += bytes;
        if (fichero.ficha.tamano < ficheroLargo || !toca())
            return;
        avance(cuenta, u"%1 · %2 de %3"_s.arg(QString::fromUtf8(fichero.relativa), Formato::tamano(deEste),
                                              Formato::tamano(fichero.ficha.tamano)));
    }
    bool hayQueParar() const { return parada || Interrupcion::pedida(); }

private:
    /// Ten times a second is enough for anybody; tens of thousands of files are skipped in one.
    bool toca()
    {
        constexpr std::chrono::milliseconds entreDos(100);
        const auto ahora = std::chrono::steady_clock::now();
        if (ahora - ultimo < entreDos)
            return false;
        ultimo = ahora;
        return true;
    }
    std::chrono::steady_clock::time_point ultimo;
};

/// One thread with its connection.
class Porteador
{
public:
    Porteador(Comun &loComun, Copiadas &lasCopiadas, CarpetaDeDestino &laCarpeta, Afc &suAfc, size_t numero)
        : comun(loComun)
        , copiadas(lasCopiadas)
        , carpeta(laCarpeta)
        , afc(suAfc)
        , primerNumero(static_cast<int>(numero * (ficherosDelLote + 1)))
    {
    }

    void trabajar()
    {
        for (auto i = comun.siguiente++; i < comun.ficheros.size() && !comun.hayQueParar(); i = comun.siguiente++) {
            const auto &fichero = comun.ficheros[i];
            if (estaYa(fichero))
                comun.contar(&CuentaDeCopia::saltados, fichero);
            else
                traer(fichero);
            if (lote.size() >= ficherosDelLote || bytesEnElLote >= bytesDelLote)
                colocarLote();
        }
        colocarLote();
        // The names too: the phone may be freed right after.
        if (conNombreNuevo)
            carpeta.asentar();
    }

private:
    struct Traido {
        const FicheroDelCarrete *fichero;
        int numero;
        QByteArray huella;
        // Of the working file.
        dev_t disco;
        ino_t inodo;
    };

    void traer(const FicheroDelCarrete &fichero)
    {
        const int numero = primerNumero + static_cast<int>(lote.size());
        const auto escrito = carpeta.nuevo(numero);
        if (!escrito)
            return comun.parar(motivoDeEscritura(errno));
        Huella huella;
        struct stat como = {};
        fstat(*escrito, &como);
        int error = 0;
        qint64 recibidos = 0;
        const auto leidos = afc.leer(fichero.ruta, fichero.ficha, [&](QByteArrayView trozo) {
            if (comun.hayQueParar())
                return false;
            if (!escribir(*escrito, trozo)) {
                error = errno;
                return false;
            }
            huella.poner(trozo);
            recibidos += trozo.size();
            comun.recibido(fichero, trozo.size(), recibidos);
            return true;
        });
        if (error == EFBIG)
            comun.fallar(fichero, u"el disco de la carpeta no admite archivos tan grandes"_s);
        else if (error != 0)
            comun.parar(motivoDeEscritura(error));
        else if (afc.perdido())
            comun.parar(leidos.motivo());
        else if (!leidos)
            comun.fallar(fichero, leidos.motivo());
        if (!leidos || error != 0 || recibidos != fichero.ficha.tamano)
            return carpeta.desechar(numero);
        // Before it is put on the disk, so that its date goes there with it.
        ponerFecha(*escrito, fichero.ficha.modificado);
        lote.push_back({&fichero, numero, huella.sacar(), como.st_dev, como.st_ino});
        bytesEnElLote += recibidos;
        comun.contar(&CuentaDeCopia::copiados, fichero);
    }

    void colocarLote()
    {
        if (lote.empty())
            return;
        const bool enElDisco = carpeta.asentar();
        if (!enElDisco)
            comun.parar(motivoDeEscritura(errno));
        for (const auto &traido : lote) {
            if (!enElDisco) {
                comun.corregir(&CuentaDeCopia::fallos);
                carpeta.desechar(traido.numero);
            } else {
                colocar(traido);
            }
        }
        lote.clear();
        bytesEnElLote = 0;
        conNombreNuevo = true;
    }

    /// Its copy stands there as it was noted, or elsewhere with the content that was noted.
    bool estaYa(const FicheroDelCarrete &fichero)
    {
        const auto juicio = copiadas.juzgar(fichero).juicio;
        if (juicio != Copiadas::Juicio::QuizaEste)
            return juicio == Copiadas::Juicio::Esta;
        const auto huella = copiadas.huellaDeSuCopia(fichero);
        for (const auto &candidata : huella ? copiadas.candidatas(fichero) : QByteArrayList()) {
            const auto abierta = carpeta.leer(candidata);
            struct stat como = {};
            if (abierta && fstat(*abierta, &como) == 0 && S_ISREG(como.st_mode) && huellaDe(*abierta) == huella) {
                copiadas.anotarSitio(fichero, candidata, como);
                return true;
            }
        }
        return false;
    }

    void colocar(const Traido &traido)
    {
        struct stat como = {};
        const auto entero = carpeta.leer(carpeta.nombreDeTrabajo(traido.numero));
        // What the disk says that it has, against what the phone said.
        if (!entero || fstat(*entero, &como) != 0 || como.st_size != traido.fichero->ficha.tamano)
            return noColocado(traido, u"no ha quedado entero en el disco"_s);
        // Another file under its name, or a disk that numbers its files anew: the bytes tell.
        const bool esElMismo = como.st_dev == traido.disco && como.st_ino == traido.inodo;
        if (!esElMismo && huellaDe(*entero) != traido.huella)
            return noColocado(traido, u"otro programa lo ha cambiado mientras se copiaba"_s);
        const auto colocado =
            colocarPorContenido(carpeta, traido.numero, traido.fichero->relativa, copiadas.candidatas(*traido.fichero));
        if (colocado.fin == Colocado::Fin::Negado)
            return noColocado(traido, u"no se le puede dar su nombre en la carpeta"_s);
        if (colocado.fin == Colocado::Fin::YaEstaba)
            comun.corregir(&CuentaDeCopia::saltados);
        // Without its note the copy is as good; only its content has to be read again one day.
        if (!traido.huella.isEmpty())
            copiadas.anotar(*traido.fichero, colocado.relativa, traido.huella, colocado.como);
    }

    void noColocado(const Traido &traido, const QString &por)
    {
        comun.corregir(&CuentaDeCopia::fallos);
        {
            const std::lock_guard cerrojo(comun.mutex);
            comun.queja(QString::fromUtf8(traido.fichero->relativa), por);
        }
        carpeta.desechar(traido.numero);
    }

    Comun &comun;
    Copiadas &copiadas;
    CarpetaDeDestino &carpeta;
    Afc &afc;
    int primerNumero;
    std::vector<Traido> lote;
    qint64 bytesEnElLote = 0;
    bool conNombreNuevo = false;
};

} // namespace

std::optional<QString> Copiador::copiar(const std::vector<FicheroDelCarrete> &ficheros, const Avance &avance,
                                        const Queja &queja, CuentaDeCopia &cuenta)
{
    Comun comun(ficheros, avance, queja);
    // Deciphering, summing and writing keep the cores busy: more threads would only wait for one another.
    const size_t nucleos = std::max(2U, std::thread::hardware_concurrency());
    conexiones.repartir(std::min(ficheros.size(), nucleos), [&](Afc &afc, size_t numero) {
        auto carpeta = CarpetaDeDestino::abrir(destino);
        if (!carpeta)
            return comun.parar(carpeta.motivo());
        Porteador(comun, copiadas, *carpeta, afc, numero).trabajar();
    });
    cuenta = comun.cuenta;
    if (!comun.motivo && !ficheros.empty())
        avance(cuenta, QString::fromUtf8(ficheros.back().relativa));
    return comun.motivo;
}

} // namespace vellora::motor
