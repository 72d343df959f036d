#include "engine/backup/Sacador.h"

#include "core/FicheroAjeno.h"
#include "engine/Interrupcion.h"
#include "engine/backup/FicheroDescifrado.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <fcntl.h>
#include <limits>
#include <mutex>
#include <sys/stat.h>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr int hilos = 2;
constexpr size_t maximoEnEspera = 512;

/// One file to take out; its bytes are its own.
struct Encargo {
    QByteArray id;
    QByteArray relativa;
    QByteArray archivo;
};

/// What the reader of the list hands to the two that copy.
class Cola
{
public:
    /// Waits for room. False once the work was stopped.
    bool poner(Encargo encargo)
    {
        std::unique_lock cerrojo(mutex);
        hayHueco.wait(cerrojo, [&] { return parada || espera.size() < maximoEnEspera; });
        if (parada)
            return false;
        espera.push_back(std::move(encargo));
        hayEncargo.notify_one();
        return true;
    }
    /// Absent once everything has been handed out or the work was stopped.
    std::optional<Encargo> tomar()
    {
        std::unique_lock cerrojo(mutex);
        hayEncargo.wait(cerrojo, [&] { return parada || acabada || !espera.empty(); });
        if (parada || espera.empty())
            return {};
        auto encargo = std::move(espera.front());
        espera.pop_front();
        hayHueco.notify_one();
        return encargo;
    }
    void acabar()
    {
        const std::lock_guard cerrojo(mutex);
        acabada = true;
        hayEncargo.notify_all();
    }
    void parar()
    {
        const std::lock_guard cerrojo(mutex);
        parada = true;
        hayEncargo.notify_all();
        hayHueco.notify_all();
    }

private:
    std::mutex mutex;
    std::condition_variable hayEncargo;
    std::condition_variable hayHueco;
    std::deque<Encargo> espera;
    bool acabada = false;
    bool parada = false;
};

/// The run that all threads share.
class Tanda
{
public:
    Tanda(const CopiaAbierta &laCopia, const QString &elDestino, const Sacador::Colocar &comoSeColoca,
          const Sacador::Queja &laQueja)
        : copia(laCopia)
        , destino(elDestino)
        , colocar(comoSeColoca)
        , queja(laQueja)
        , deLaCopia(open(QFile::encodeName(laCopia.carpeta()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }

    /// The body of each thread.
    void trabajar(int numero)
    {
        copiar(numero);
        const std::lock_guard cerrojo(mutex);
        ++salidos;
        haySalido.notify_all();
    }
    /// Waits for the threads to be through, no longer than told.
    bool acabada(std::chrono::milliseconds espera)
    {
        std::unique_lock cerrojo(mutex);
        return haySalido.wait_for(cerrojo, espera, [&] { return salidos == hilos; });
    }
    Cuenta cuenta()
    {
        const std::lock_guard cerrojo(mutex);
        return llevada;
    }
    std::optional<QString> motivo()
    {
        const std::lock_guard cerrojo(mutex);
        return motivoDeParada;
    }
    void fallar(const QByteArray &relativa, const QString &motivo)
    {
        const std::lock_guard cerrojo(mutex);
        ++llevada.fallidos;
        queja(relativa, motivo);
    }
    void parar(const QString &por)
    {
        {
            const std::lock_guard cerrojo(mutex);
            if (!motivoDeParada)
                motivoDeParada = por;
        }
        cola.parar();
    }

    Cola cola;

private:
    /// Copies until the queue is empty.
    void copiar(int numero)
    {
        auto carpeta = CarpetaDeDestino::abrir(destino);
        if (!carpeta) {
            parar(carpeta.motivo());
            return;
        }
        std::vector<unsigned char> almacen;
        while (const auto encargo = cola.tomar())
            atender(*encargo, *carpeta, numero, almacen);
        carpeta->desechar(numero);
    }
    void atender(const Encargo &encargo, CarpetaDeDestino &carpeta, int numero, std::vector<unsigned char> &almacen)
    {
        const auto datos = leerDatosDeFichero(encargo.archivo);
        if (!datos)
            return fallar(encargo.relativa, u"la copia no dice cómo era"_s);
        std::optional<Clave> clave;
        // A file without a key of its own is not encrypted, in whatever backup.
        if (copia.cifrada() && !datos->clave.isEmpty()) {
            clave = copia.claves().abrir(datos->clave);
            if (!clave)
                return fallar(encargo.relativa, u"su clave no se puede abrir"_s);
        }
        const auto origen = abrirAjeno(*deLaCopia, nombreEnLaCopia(encargo.id));
        if (!origen)
            return fallar(encargo.relativa, QString::fromUtf16(Sacador::falta));
        const auto escrito = carpeta.nuevo(numero);
        if (!escrito)
            return parar(enPalabras(errno == ENOSPC ? FinDeFichero::SinSitio : FinDeFichero::NoSeEscribe));

        auto fin = pasarFichero(*origen, *escrito, clave, Relleno::Quitar, almacen);
        // An empty file has no block to be padded. One that the list knows to be longer was cut at its very beginning.
        if (fin == FinDeFichero::Cortado && datos->tamano == 0 && lseek(*origen, 0, SEEK_END) == 0)
            fin = FinDeFichero::Entero;
        if (fin == FinDeFichero::Ilegible)
            return fallar(encargo.relativa, enPalabras(fin));
        if (fin != FinDeFichero::Entero && fin != FinDeFichero::Cortado)
            return parar(enPalabras(fin));
        // The owner knows photographs and recordings by their day.
        const std::array<timespec, 2> horas{timespec{0, UTIME_OMIT}, timespec{datos->modificado, 0}};
        if (datos->modificado > 0)
            futimens(*escrito, horas.data());
        const auto colocado = colocar(carpeta, numero, encargo.relativa);
        if (colocado == Sacador::Colocado::Negado)
            return fallar(encargo.relativa, u"no se le puede dar su nombre en el destino"_s);
        contar(encargo, fin, colocado, lseek(*escrito, 0, SEEK_END));
    }

    void contar(const Encargo &encargo, FinDeFichero fin, Sacador::Colocado colocado, qint64 bytes)
    {
        const std::lock_guard cerrojo(mutex);
        if (colocado == Sacador::Colocado::YaEstaba) {
            ++llevada.yaEstaban;
        } else {
            ++llevada.copiados;
            llevada.bytes += bytes;
        }
        if (fin == FinDeFichero::Cortado) {
            ++llevada.cortados;
            queja(encargo.relativa, u"la copia solo tiene su principio"_s);
        }
    }
    const CopiaAbierta &copia;
    const QString &destino;
    const Sacador::Colocar &colocar;
    const Sacador::Queja &queja;
    const Descriptor deLaCopia;
    std::mutex mutex;
    std::condition_variable haySalido;
    int salidos = 0;
    Cuenta llevada;
    std::optional<QString> motivoDeParada;
};

} // namespace

Sacador::Colocado Sacador::enSuSitio(CarpetaDeDestino &carpeta, int numero, const QByteArray &relativa)
{
    return carpeta.colocar(numero, relativa) ? Colocado::Nuevo : Colocado::Negado;
}

Plan Sacador::planear() const
{
    Plan plan;
    copia.porCadaFichero([&](const CopiaAbierta::Entrada &entrada) {
        if (!sitio(entrada))
            return true;
        ++plan.ficheros;
        if (const auto datos = leerDatosDeFichero(entrada.archivo))
            plan.bytes += std::min(datos->tamano, std::numeric_limits<qint64>::max() - plan.bytes);
        return !Interrupcion::pedida();
    });
    return plan;
}

std::optional<QString> Sacador::sacar(const QString &destino, const Avance &avance, const Queja &queja,
                                      Cuenta &cuenta) const
{
    Tanda tanda(copia, destino, colocar, queja);
    std::vector<std::thread> trabajadores;
    for (int numero = 1; numero <= hilos; ++numero)
        trabajadores.emplace_back([&tanda, numero] { tanda.trabajar(numero); });

    copia.porCadaFichero([&](const CopiaAbierta::Entrada &entrada) {
        const auto relativa = sitio(entrada);
        if (!relativa)
            return true;
        avance(tanda.cuenta());
        if (!CarpetaDeDestino::esSegura(*relativa)) {
            tanda.fallar(*relativa, u"su nombre no es de fiar"_s);
            return true;
        }
        // The row's bytes are SQLite's, and gone with the next one.
        const auto propio = [](const QByteArray &bytes) {
            return QByteArray(bytes.constData(), bytes.size());
        };
        return tanda.cola.poner({propio(entrada.id), *relativa, propio(entrada.archivo)});
    });
    tanda.cola.acabar();
    while (!tanda.acabada(std::chrono::milliseconds(100)))
        avance(tanda.cuenta());
    for (auto &hilo : trabajadores)
        hilo.join();
    cuenta = tanda.cuenta();
    return tanda.motivo();
}

} // namespace vellora::motor
