#include "app/cli/LeerClave.h"

#include "app/cli/Consola.h"
#include "platform/Procesos.h"

#include <cerrno>
#include <csignal>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

termios comoEstaba = {};

/// The terminal must show again what is typed, however the program ends.
void devolverEco(int senal)
{
    tcsetattr(STDIN_FILENO, TCSANOW, &comoEstaba);
    std::signal(senal, SIG_DFL);
    std::raise(senal);
}

class SinEco
{
public:
    SinEco()
    {
        tcgetattr(STDIN_FILENO, &comoEstaba);
        for (const int senal : {SIGINT, SIGTERM, SIGHUP})
            std::signal(senal, &devolverEco);
        auto callada = comoEstaba;
        callada.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &callada);
    }
    ~SinEco()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &comoEstaba);
        for (const int senal : {SIGINT, SIGTERM, SIGHUP})
            std::signal(senal, SIG_DFL);
    }
};

/// Up to the line feed, byte by byte: what follows belongs to somebody else.
std::optional<QString> leerLinea()
{
    constexpr qsizetype maximo = 4096;
    QByteArray linea;
    char letra = 0;
    for (;;) {
        const auto n = read(STDIN_FILENO, &letra, 1);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0 || letra == '\n' || linea.size() >= maximo)
            break;
        linea += letra;
    }
    if (linea.endsWith('\r'))
        linea.chop(1);
    auto texto = QString::fromUtf8(linea);
    linea.fill('\0');
    return texto.isEmpty() ? std::nullopt : std::optional(texto);
}

} // namespace

std::optional<QString> leerClave()
{
    guardarSecretos();
    if (isatty(STDIN_FILENO) == 0) {
        auto clave = leerLinea();
        if (!clave)
            Consola::palabras(u"No me ha llegado ninguna contraseña."_s);
        return clave;
    }
    const SinEco callado;
    Consola::palabras(u"Contraseña para las copias (mínimo 6 caracteres; no se ve al escribirla):"_s);
    auto clave = leerLinea();
    Consola::palabras(u"Repítela:"_s);
    const auto repetida = leerLinea();
    if (!clave || clave != repetida) {
        Consola::palabras(u"No son iguales."_s);
        return {};
    }
    return clave;
}

} // namespace vellora
