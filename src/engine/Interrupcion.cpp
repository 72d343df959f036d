#include "engine/Interrupcion.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <pthread.h>
#include <thread>

namespace vellora::motor::Interrupcion
{

namespace
{

std::atomic<bool> hayPeticion = false;

// The program gives a second. What is under a final name is whole at any moment, so the end may come at any moment too.
constexpr auto plazo = std::chrono::milliseconds(600);

} // namespace

void vigilar()
{
    sigset_t senales;
    sigemptyset(&senales);
    sigaddset(&senales, SIGTERM);
    sigaddset(&senales, SIGINT);
    pthread_sigmask(SIG_BLOCK, &senales, nullptr);
    // A reader that has gone shows in the result of a write.
    std::signal(SIGPIPE, SIG_IGN);
    std::thread([senales] {
        int cual = 0;
        sigwait(&senales, &cual);
        hayPeticion = true;
        std::this_thread::sleep_for(plazo);
        std::_Exit(estado);
    }).detach();
}

bool pedida()
{
    return hayPeticion;
}

} // namespace vellora::motor::Interrupcion
