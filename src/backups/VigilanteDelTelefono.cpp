#include "backups/VigilanteDelTelefono.h"

#include "core/SegundoPlano.h"
#include "session/Detector.h"

namespace vellora
{

VigilanteDelTelefono::VigilanteDelTelefono(QString elUdid, QObject *padre) : QObject(padre), udid(std::move(elUdid))
{
    connect(&reloj, &QTimer::timeout, this, &VigilanteDelTelefono::mirar);
}

void VigilanteDelTelefono::mirar()
{
    enSegundoPlano(
        this, [udid = udid] { return Detector::conectados().contains(udid); },
        [this](bool conectado) {
            ausencias = conectado ? 0 : ausencias + 1;
            if (ausencias < 2 || !reloj.isActive())
                return;
            parar();
            emit perdido();
        });
}

} // namespace vellora
