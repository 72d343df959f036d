#include "core/Ejecutor.h"
#include "core/SegundoPlano.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <stop_token>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vellora
{

namespace
{

constexpr int graciaAntesDeMatar = 1000; // milliseconds

class Descriptor
{
public:
    explicit Descriptor(int abierto) : fd(abierto) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { cerrar(); }
    int operator*() const { return fd; }
    void cerrar()
    {
        if (fd >= 0)
            close(fd);
        fd = -1;
    }

private:
    int fd;
};

[[noreturn]] void serElHijo(char *const argumentos[], int salida)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Ejecutor::acotarMemoria();
    const int nada = open("/dev/null", O_RDWR);
    dup2(nada, STDIN_FILENO);
    dup2(salida, STDOUT_FILENO);
    dup2(nada, STDERR_FILENO);
    execv(argumentos[0], argumentos);
    _exit(127);
}

enum class Lectura { Nada, Algo, Final };

/// One read of what is there, without waiting.
Lectura leerUnaVez(int fd, QByteArray &salida)
{
    std::array<char, 65536> trozo;
    const auto leidos = read(fd, trozo.data(), trozo.size());
    if (leidos > 0)
        salida.append(trozo.data(), leidos);
    if (leidos < 0)
        return errno == EAGAIN || errno == EINTR ? Lectura::Nada : Lectura::Final;
    return leidos == 0 ? Lectura::Final : Lectura::Algo;
}

bool haTerminado(pid_t hijo)
{
    siginfo_t suceso{};
    return waitid(P_PID, static_cast<id_t>(hijo), &suceso, WEXITED | WNOHANG | WNOWAIT) != 0 || suceso.si_pid == hijo;
}

/// Follows the child until it ends; false when the limit came first, the program ends, or it writes without an end.
bool seguir(pid_t hijo, int fd, QByteArray &salida, const QDeadlineTimer &limite)
{
    const Descriptor testigo(static_cast<int>(syscall(SYS_pidfd_open, hijo, 0)));
    constexpr int sinTestigo = 40; // milliseconds between two looks where the system has no such descriptor
    std::array<pollfd, 2> espera{pollfd{fd, POLLIN, 0}, pollfd{*testigo, POLLIN, 0}};
    while (!haTerminado(hijo)) {
        if (limite.hasExpired() || salida.size() > Ejecutor::maximoDeSalida)
            return false;
        const auto resta = static_cast<int>(limite.remainingTime()) + 1;
        poll(espera.data(), espera.size(), *testigo >= 0 ? resta : std::min(resta, sinTestigo));
        if (espera[0].revents != 0 && leerUnaVez(fd, salida) == Lectura::Final)
            espera[0].fd = -1; // one that has closed its output is only waited for
    }
    return true;
}

/// Asks the child and all that it started to end, and kills what is left after the grace.
void acabarCon(pid_t hijo)
{
    kill(-hijo, SIGTERM);
    const QDeadlineTimer gracia(graciaAntesDeMatar);
    constexpr int entreMiradas = 20;
    while (!haTerminado(hijo) && !gracia.hasExpired())
        poll(nullptr, 0, entreMiradas);
    kill(-hijo, SIGKILL);
}

std::optional<pid_t> arrancar(const QString &ejecutable, const QStringList &argumentos, int salida)
{
    std::vector<QByteArray> textos{QFile::encodeName(ejecutable)};
    for (const auto &uno : argumentos)
        textos.push_back(uno.toUtf8());
    std::vector<char *> punteros;
    for (auto &uno : textos)
        punteros.push_back(uno.data());
    punteros.push_back(nullptr);
    const pid_t hijo = fork();
    if (hijo < 0)
        return {};
    if (hijo == 0)
        serElHijo(punteros.data(), salida);
    setpgid(hijo, hijo); // here too: the group must be there when it is asked to end
    return hijo;
}

} // namespace

Ejecutor::Respuesta Ejecutor::preguntar(const QString &ejecutable, const QStringList &argumentos, double segundos)
{
    const auto parada = SegundoPlano::delPrograma().parada();
    int extremos[2];
    if (parada.stop_requested() || pipe2(extremos, O_CLOEXEC) != 0)
        return {{}, false};
    const Descriptor lectura(extremos[0]);
    Descriptor escritura(extremos[1]);
    fcntl(*lectura, F_SETFL, O_NONBLOCK);
    const QDeadlineTimer limite(static_cast<qint64>(segundos * 1000));
    const auto hijo = arrancar(ejecutable, argumentos, *escritura);
    if (!hijo)
        return {};
    escritura.cerrar();

    QByteArray salida;
    bool solo = false;
    {
        const std::stop_callback alParar(parada, [hijo] { kill(-*hijo, SIGKILL); });
        solo = seguir(*hijo, *lectura, salida, limite);
        if (!solo)
            acabarCon(*hijo);
    } // before it is waited for: the number could be another's afterwards
    while (salida.size() <= maximoDeSalida && leerUnaVez(*lectura, salida) == Lectura::Algo) {
    }
    while (waitpid(*hijo, nullptr, 0) < 0 && errno == EINTR) {
    }
    QStringDecoder decodificar(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString texto = salida.size() > maximoDeSalida ? QString() : QString(decodificar(salida));
    return {decodificar.hasError() ? QString() : texto, solo && !parada.stop_requested()};
}

QString Ejecutor::rapido(const QString &ejecutable, const QStringList &argumentos, double segundos)
{
    return preguntar(ejecutable, argumentos, segundos).salida;
}

} // namespace vellora
