#include "core/Ejecutor.h"
#include "core/Herramientas.h"
#include "core/SegundoPlano.h"
#include "session/Detector.h"
#include "session/Modelo.h"
#include "session/Vigia.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto sentenciaSinAcceso = u"El iPhone no me deja entrar. Desbloquéalo y, si te lo pregunta, toca «Confiar»."_s;
const auto sentenciaCallado =
    u"%1 está conectado, pero no contesta. Desbloquéalo; si sigue igual, desconecta el cable y vuelve a conectarlo."_s;
constexpr double segundosParaElAcceso = 25;

} // namespace

void Modelo::comprobarAcceso()
{
    const auto &herramienta = Herramientas::pymobiledevice();
    if (preguntandoAcceso)
        return;
    if (!seleccionado_ || !herramienta) {
        ponAvisoAcceso({});
        return;
    }
    const auto preguntar = [herramienta = *herramienta, udid = seleccionado_->id] {
        return Detector::enTurno([&] {
            const QStringList orden{u"afc"_s, u"ls"_s, u"/DCIM"_s, u"--udid"_s, udid};
            return Ejecutor::preguntar(herramienta, orden, segundosParaElAcceso);
        });
    };
    preguntandoAcceso = true;
    enSegundoPlano(this, preguntar, [this, udid = seleccionado_->id](const Ejecutor::Respuesta &respuesta) {
        preguntandoAcceso = false;
        if (!seleccionado_ || seleccionado_->id != udid) {
            if (seleccionado_)
                comprobarAcceso(); // another phone is in view by now
            return;
        }
        const bool entra = respuesta.salida.contains("/DCIM"_L1);
        if (!entra)
            vigia->fallo();
        if (!entra && !respuesta.aTiempo)
            return ponCallados({udid}); // no answer is no refusal
        ponAvisoAcceso(entra ? std::nullopt : std::optional(sentenciaSinAcceso));
    });
}

void Modelo::ponEnVista(bool vista)
{
    vigia->ponEnVista(vista);
}

void Modelo::ponAvisoAcceso(const std::optional<QString> &aviso)
{
    if (aviso == avisoAcceso_)
        return;
    avisoAcceso_ = aviso;
    emit cambioDeSesion();
}

void Modelo::ponCallados(const QStringList &udids)
{
    QStringList sentencias;
    for (const auto &udid : udids) {
        const auto conocido = nombres.constFind(udid);
        sentencias << sentenciaCallado.arg(conocido != nombres.cend() ? u"El iPhone «%1»"_s.arg(*conocido)
                                                                      : u"Un iPhone (…%1)"_s.arg(udid.right(6)));
    }
    const auto aviso = sentencias.join(u'\n');
    if (std::exchange(avisoCallados_, aviso) != aviso)
        emit cambioDeSesion();
}

} // namespace vellora
