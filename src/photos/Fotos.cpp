#include "photos/Fotos.h"

#include "core/Formato.h"
#include "photos/BorrarFotos.h"
#include "photos/CopiarFotos.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"

using namespace Qt::StringLiterals;

namespace vellora
{

Fotos::Fotos(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre)
    : QObject(padre), modelo(elModelo), consentimiento(elConsentimiento)
{
    connect(&modelo, &Modelo::cambioDeSesion, this, &Fotos::cambioDeCarpeta);
}

QString Fotos::carpeta() const
{
    return modelo.carpetaFotos();
}

bool Fotos::carpetaEsLaDeSiempre() const
{
    return modelo.carpetaFotosEsLaDeSiempre();
}

void Fotos::ponCarpeta(const QString &ruta)
{
    modelo.ponCarpetaFotos(ruta);
}

void Fotos::volverACarpetaPorDefecto()
{
    modelo.volverACarpetaPorDefecto();
}

void Fotos::abrirCarpeta()
{
    modelo.abrirEnFinder(carpeta());
}

void Fotos::copiar()
{
    if (const auto &elegido = modelo.seleccionado(); elegido && !modelo.tarea().enMarcha())
        copiarFotosRapido(modelo.tarea(), elegido->id, carpeta());
}

void Fotos::prepararLiberacion()
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido || modelo.tarea().enMarcha())
        return;
    planDeLiberacion(modelo.tarea(), elegido->id, carpeta(), [this, udid = elegido->id](const PlanLiberar &plan) {
        if (plan.archivos < 1)
            return consentimiento.avisar(
                u"No hay nada que borrar sin riesgo. Copia antes las fotos al Mac, o apunta la "
                "carpeta a donde ya las tengas guardadas."_s);
        preguntarPorLiberar(udid, plan);
    });
}

void Fotos::preguntarPorLiberar(const QString &udid, const PlanLiberar &plan)
{
    auto texto = u"Se borrarán %1 archivos y recuperarás %2."_s.arg(plan.archivos).arg(Formato::tamano(plan.bytes));
    if (plan.sinCopiar > 0)
        texto += u"\n\nOtros %1 se quedan porque NO están copiados."_s.arg(plan.sinCopiar);
    if (!plan.alQuitarLaLista.isEmpty())
        texto += u"\n\n⚠️ "_s + plan.alQuitarLaLista;
    const auto suCarpeta = carpeta();
    const auto otraCarpeta = [this, suCarpeta]() -> std::optional<QString> {
        if (carpeta() == suCarpeta)
            return {};
        return u"No he borrado nada: la carpeta de las fotos ya no es la de antes."_s;
    };
    consentimiento.plantear({u"¿Borrar del iPhone lo que ya está en el Mac?"_s, texto, u"Borrar del iPhone"_s,
                             u"No tocar nada"_s, Cerradura::BorrarCopiadas, udid, otraCarpeta, [this, udid, suCarpeta] {
                                 liberarEspacio(modelo.tarea(), udid, suCarpeta);
                             }});
}

void Fotos::prepararVaciado()
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido || modelo.tarea().enMarcha())
        return;
    const auto copias = modelo.carpetaCopias();
    const auto preguntar = [this, udid = elegido->id, copias](const PlanDeVaciado &plan) {
        if (!plan.copia.lasTieneTodas)
            return consentimiento.avisar(avisoDeNoVaciar(plan.copia.motivo));
        consentimiento.plantear(
            {u"¿Borrar TODAS las fotos del iPhone, sin dejar rastro?"_s, preguntaDeVaciar(plan), u"Borrarlo todo"_s,
             u"No borrar nada"_s, Cerradura::BorrarTodasLasFotos, udid, nullptr, [this, udid, copias] {
                 borrarBibliotecaDeFotos(modelo.tarea(), udid, copias,
                                         [this](const QString &resumen) { consentimiento.avisar(resumen); });
             }});
    };
    planBorrarBibliotecaDeFotos(modelo.tarea(), elegido->id, copias, preguntar);
}

QString Fotos::pocoSitio() const
{
    const auto libres = modelo.seleccionado() ? modelo.seleccionado()->libresBytes : std::nullopt;
    if (!libres || *libres >= pocoEspacio)
        return {};
    return u"Te quedan %1 libres en el iPhone. Por debajo de 5 GB empieza a dar problemas."_s.arg(
        Formato::tamano(libres));
}

} // namespace vellora
