#include "core/Ejecutor.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QStringDecoder>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vellora
{

namespace
{

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
    const int nada = open("/dev/null", O_RDWR);
    dup2(nada, STDIN_FILENO);
    dup2(salida, STDOUT_FILENO);
    dup2(nada, STDERR_FILENO);
    execv(argumentos[0], argumentos);
    _exit(127);
}

/// One read, waiting for data or the end; false at the end of the output.
bool leerUnaVez(int fd, QByteArray &salida)
{
    std::array<char, 65536> trozo;
    ssize_t leidos = 0;
    do
        leidos = read(fd, trozo.data(), trozo.size());
    while (leidos < 0 && errno == EINTR);
    if (leidos > 0)
        salida.append(trozo.data(), leidos);
    return leidos > 0;
}

bool haTerminado(pid_t hijo, int milisegundos)
{
    const Descriptor testigo(static_cast<int>(syscall(SYS_pidfd_open, hijo, 0)));
    pollfd espera{*testigo, POLLIN, 0};
    return poll(&espera, 1, milisegundos) > 0;
}

} // namespace

QString Ejecutor::rapido(const QString &ejecutable, const QStringList &argumentos, double segundos)
{
    std::vector<QByteArray> textos{QFile::encodeName(ejecutable)};
    for (const auto &uno : argumentos)
        textos.push_back(uno.toUtf8());
    std::vector<char *> punteros;
    for (auto &uno : textos)
        punteros.push_back(uno.data());
    punteros.push_back(nullptr);

    int extremos[2];
    if (pipe2(extremos, O_CLOEXEC) != 0)
        return {};
    const Descriptor lectura(extremos[0]);
    Descriptor escritura(extremos[1]);
    const QDeadlineTimer limite(static_cast<qint64>(segundos * 1000));
    const pid_t hijo = fork();
    if (hijo < 0)
        return {};
    if (hijo == 0)
        serElHijo(punteros.data(), *escritura);
    escritura.cerrar();

    QByteArray salida;
    bool quedaSalida = true;
    bool termino = false;
    while (!termino && !limite.hasExpired()) {
        if (quedaSalida)
            quedaSalida = leerUnaVez(*lectura, salida);
        // A busy tool is read 25 times a second; one that has closed its output is only waited for.
        termino = haTerminado(hijo, quedaSalida ? 40 : static_cast<int>(limite.remainingTime()));
    }
    if (!termino && kill(-hijo, SIGTERM) != 0)
        kill(hijo, SIGTERM);
    while (leerUnaVez(*lectura, salida)) {
    }
    while (waitpid(hijo, nullptr, 0) < 0 && errno == EINTR) {
    }

    QStringDecoder decodificar(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString texto = decodificar(salida);
    return decodificar.hasError() ? QString() : texto;
}

} // namespace vellora
