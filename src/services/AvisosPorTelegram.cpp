#include "services/AvisosPorTelegram.h"

#include "core/Preferencias.h"
#include "core/Tarea.h"
#include "services/Telegram.h"

#include <QTimer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveEncendido = u"avisarTelegram"_s;
constexpr int milisegundosEntreMiradas = 5000;
constexpr int miradasComoMucho = 2880; // four hours

} // namespace

AvisosPorTelegram::AvisosPorTelegram(QObject *padre) : QObject(padre), encendido_(Preferencias::logico(claveEncendido))
{
}

bool AvisosPorTelegram::datosValen() const
{
    return token.trimmed().size() >= minimoDelToken && !chat.trimmed().isEmpty();
}

void AvisosPorTelegram::mirar()
{
    configurado_ = Telegram::configurado();
    emit cambio();
}

void AvisosPorTelegram::poner(bool encendidos)
{
    encendido_ = encendidos;
    Preferencias::ponLogico(claveEncendido, encendidos);
    aviso_.clear();
    configurado_ = Telegram::configurado();
    pidiendoDatos_ = encendidos && !configurado_;
    emit cambio();
}

void AvisosPorTelegram::pedirDatos()
{
    pidiendoDatos_ = true;
    emit cambio();
}

void AvisosPorTelegram::olvidarDatos()
{
    token.clear();
    chat.clear();
    pidiendoDatos_ = false;
    emit cambioDeDatos();
    mirar();
}

void AvisosPorTelegram::guardarDatos()
{
    if (!datosValen())
        return;
    const bool guardados = Telegram::guardar(token.trimmed(), chat.trimmed());
    aviso_ = guardados ? QString() : u"No he podido guardar los datos en el Llavero."_s;
    olvidarDatos();
}

void AvisosPorTelegram::cancelarDatos()
{
    olvidarDatos();
    if (encendido_ != configurado_)
        poner(configurado_);
}

void AvisosPorTelegram::probar()
{
    if (probando_)
        return;
    probando_ = true;
    aviso_.clear();
    emit cambio();
    const auto texto = u"Vellora: esto es una prueba. Si lees esto, los avisos funcionan."_s;
    Telegram::enviar(this, texto, [this](const std::optional<QString> &fallo) {
        probando_ = false;
        aviso_ = fallo.value_or(u"Mensaje enviado. Míralo en Telegram."_s);
        emit cambio();
    });
}

void AvisosPorTelegram::avisarAlTerminar(Tarea &tarea, const QString &texto)
{
    if (!encendido_ || !Telegram::configurado())
        return;
    auto *reloj = new QTimer(this);
    connect(reloj, &QTimer::timeout, &tarea, [this, reloj, &tarea, texto, miradas = 0]() mutable {
        if (++miradas > miradasComoMucho)
            return reloj->deleteLater();
        if (tarea.enMarcha() || !tarea.terminadaBien())
            return;
        reloj->deleteLater();
        reloj->stop();
        const auto mensaje = *tarea.terminadaBien() ? texto : u"Vellora: la copia NO se completó. Mira la app."_s;
        Telegram::enviar(this, mensaje, [](const std::optional<QString> &) {});
    });
    reloj->start(milisegundosEntreMiradas);
}

} // namespace vellora
