#include "engine/Ordenes.h"
#include "engine/roll/BorradoProbado.h"
#include "engine/roll/FinDeBorrado.h"
#include "engine/roll/Rutas.h"
#include "engine/roll/SinCopia.h"

#include <map>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

struct PlanDeLiberar {
    std::vector<FotoEntera> fotos; ///< those that may go
    qint64 ficheros = 0;
    qint64 seQuedan = 0; ///< files
    qint64 bytes = 0;
};

/// A photo may go when each of its files seems to be in the folder; the proof comes right before deleting it.
PlanDeLiberar planear(const Carrete &carrete, const Copiadas &copiadas)
{
    struct EnCurso {
        FotoEntera foto;
        qint64 bytes = 0;
        bool entera = true;
    };
    std::map<QByteArray, EnCurso> fotos;
    for (const auto &fichero : carrete.ficheros) {
        auto &suya = fotos[elementoDe(fichero.relativa)];
        suya.entera = suya.entera && copiadas.juzgar(fichero).juicio != Copiadas::Juicio::Falta;
        suya.bytes += fichero.ficha.tamano;
        suya.foto.push_back(&fichero);
    }
    PlanDeLiberar plan;
    for (auto &[clave, suya] : fotos) {
        const auto cuantos = static_cast<qint64>(suya.foto.size());
        if (!suya.entera) {
            plan.seQuedan += cuantos;
            continue;
        }
        plan.ficheros += cuantos;
        plan.bytes += suya.bytes;
        plan.fotos.push_back(std::move(suya.foto));
    }
    return plan;
}

int borrar(const PlanDeLiberar &plan, Conexiones &conexiones, const Carrete &carrete, Copiadas &copiadas,
           const QString &destino, Avisos &avisar)
{
    CuentaDeBorrado cuenta;
    const auto avance = [&](const FicheroDelCarrete &) {
        avisar.progreso(cuenta.borrados, {{u"bytes"_s, cuenta.liberados}});
    };
    const auto parada = BorradoProbado(destino, copiadas, conexiones, avisar, cuenta).borrar(plan.fotos, avance);
    avisar.avisar(u"progreso"_s, {{u"hechos"_s, cuenta.borrados}, {u"bytes"_s, cuenta.liberados}});
    return acabarBorrado({plan.ficheros, plan.seQuedan, carrete.problemas.isEmpty(), true, parada}, cuenta, conexiones,
                         avisar);
}

} // namespace

int liberar(const QStringList &argumentos, Avisos &avisar)
{
    return conElCarrete(argumentos[0], avisar, [&](Conexiones &conexiones, const Carrete &carrete) {
        auto copiadas = Copiadas::leer(argumentos[1], argumentos[0]);
        const auto plan = planear(carrete, copiadas);
        QJsonObject aviso{{u"a_borrar"_s, plan.ficheros}, {u"se_quedan"_s, plan.seQuedan}, {u"bytes"_s, plan.bytes}};
        if (!confirmado())
            aviso[u"al_quitar_lista"_s] = alQuitarLaLista(conexiones.primera(), carrete);
        avisar.avisar(u"plan"_s, aviso);
        return confirmado() ? borrar(plan, conexiones, carrete, copiadas, argumentos[1], avisar) : 0;
    });
}

} // namespace vellora::motor
