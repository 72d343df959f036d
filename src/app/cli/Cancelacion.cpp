#include "app/cli/Cancelacion.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vellora
{

namespace
{

std::array<int, 2> tubo{-1, -1};

void alLlegar(int)
{
    const int antes = errno;
    const char byte = 0;
    [[maybe_unused]] const auto escrito = write(tubo[1], &byte, 1);
    errno = antes;
}

} // namespace

Cancelacion::Cancelacion(QObject *padre) : QObject(padre)
{
    if (pipe2(tubo.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    aviso = std::make_unique<QSocketNotifier>(tubo[0], QSocketNotifier::Read);
    connect(aviso.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> leido;
        while (read(tubo[0], leido.data(), leido.size()) > 0) {
        }
        emit pedida();
    });
    for (const int cual : {SIGINT, SIGTERM, SIGHUP}) {
        // What was started to outlive its terminal (nohup, a background job of a script) stays so.
        if (std::signal(cual, alLlegar) == SIG_IGN)
            std::signal(cual, SIG_IGN);
    }
}

Cancelacion::~Cancelacion()
{
    for (const int cual : {SIGINT, SIGTERM, SIGHUP})
        std::signal(cual, SIG_DFL);
    aviso.reset();
    for (auto &extremo : tubo)
        close(std::exchange(extremo, -1));
}

} // namespace vellora
