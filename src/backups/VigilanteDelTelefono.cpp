#include "backups/VigilanteDelTelefono.h"

#include "core/SegundoPlano.h"
#include "platform/Procesos.h"
#include "session/Detector.h"

namespace vellora
{

VigilanteDelTelefono::VigilanteDelTelefono(QString elUdid, QObject *padre) : QObject(padre), udid(std::move(elUdid))
{
    connect(&reloj, &QTimer::timeout, this, &VigilanteDelTelefono::mirar);
}

void VigilanteDelTelefono::empezar(qint64 laHerramienta)
{
    herramienta = laHerramienta;
    haHablado();
    reloj.start(milisegundosEntreMiradas);
}

void VigilanteDelTelefono::haHablado()
{
    silencio.start();
    procesadorAlCallar = segundosDeProcesador(herramienta);
}

void VigilanteDelTelefono::mirar()
{
    if (mirando)
        return; // the look before has not come back
    mirando = true;
    enSegundoPlano(
        this, [udid = udid] { return Detector::conectados().contains(udid); },
        [this](bool conectado) {
            mirando = false;
            juzgar(conectado);
        });
}

void VigilanteDelTelefono::juzgar(bool conectado)
{
    ausencias = conectado ? 0 : ausencias + 1;
    if (!reloj.isActive() || (ausencias < 2 && !daVueltasEnVano()))
        return;
    parar();
    emit perdido();
}

bool VigilanteDelTelefono::daVueltasEnVano() const
{
    const auto callado = static_cast<double>(silencio.elapsed()) / 1000.0;
    const auto usado = segundosDeProcesador(herramienta) - procesadorAlCallar;
    // A twentieth of a core: one that waits for the owner uses nothing, and a busy computer leaves it no more.
    return callado > segundosDeSilencio && usado > callado / 20;
}

} // namespace vellora
