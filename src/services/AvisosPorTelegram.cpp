#include "services/AvisosPorTelegram.h"

#include "core/Preferencias.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "services/Telegram.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveEncendido = u"avisarTelegram"_s;
constexpr qint64 milisegundosComoMucho = 4LL * 60 * 60 * 1000;

} // namespace

AvisosPorTelegram::AvisosPorTelegram(QObject *padre) : QObject(padre), encendido_(Preferencias::logico(claveEncendido))
{
}

bool AvisosPorTelegram::datosValen() const
{
    return token.trimmed().size() >= minimoDelToken && !chat.trimmed().isEmpty();
}

void AvisosPorTelegram::mirar(const std::function<void()> &despues)
{
    // The store of secrets may take its time to answer; of several answers the last one counts.
    enSegundoPlano(this, &Telegram::configuracion, [this, despues, suya = ++vuelta](const auto &hallada) {
        if (suya != vuelta)
            return;
        configurado_ = hallada.has_value();
        despues();
        emit cambio();
    });
}

void AvisosPorTelegram::poner(bool encendidos)
{
    encendido_ = encendidos;
    Preferencias::ponLogico(claveEncendido, encendidos);
    aviso_.clear();
    if (!encendidos)
        pidiendoDatos_ = false;
    emit cambio();
    mirar([this] { pidiendoDatos_ = encendido_ && !configurado_; });
}

void AvisosPorTelegram::pedirDatos()
{
    pidiendoDatos_ = true;
    emit cambio();
}

void AvisosPorTelegram::olvidarDatos()
{
    token.fill(u'\0');
    token.clear();
    chat.clear();
    pidiendoDatos_ = false;
    emit cambioDeDatos();
    emit cambio();
}

void AvisosPorTelegram::guardarDatos()
{
    if (!datosValen())
        return;
    // The store may ask the owner to unlock it, and waits for the answer.
    const auto guardar = [suyo = token.trimmed(), donde = chat.trimmed()] {
        return Telegram::guardar(suyo, donde);
    };
    olvidarDatos();
    enSegundoPlano(this, guardar, [this](bool guardados) {
        aviso_ = guardados ? QString() : u"No he podido guardar los datos en el Llavero."_s;
        mirar();
    });
}

void AvisosPorTelegram::cancelarDatos()
{
    olvidarDatos();
    mirar([this] {
        encendido_ = configurado_;
        Preferencias::ponLogico(claveEncendido, encendido_);
    });
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
    if (!encendido_ || !tarea.enMarcha())
        return;
    QElapsedTimer desde;
    desde.start();
    // A job ends once, and none begins before the one that runs has ended.
    const auto alAcabar = [this, texto, desde](bool bien) {
        if (desde.hasExpired(milisegundosComoMucho))
            return;
        const auto mensaje = bien ? texto : u"Vellora: la copia NO se completó. Mira la app."_s;
        Telegram::enviar(this, mensaje, [](const std::optional<QString> &) {});
    };
    connect(&tarea, &Tarea::acabada, this, alAcabar, Qt::SingleShotConnection);
}

} // namespace vellora
