#include "photos/Fotos.h"

#include "core/Formato.h"
#include "photos/BorrarFotos.h"
#include "photos/CopiarFotos.h"
#include "session/Modelo.h"

using namespace Qt::StringLiterals;

namespace vellora
{

Fotos::Fotos(Modelo &elModelo, QObject *padre) : QObject(padre), modelo(elModelo)
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

void Fotos::ponAviso(const QString &texto)
{
    aviso_ = texto;
    emit cambio();
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
    plan.reset();
    planDeLiberacion(modelo.tarea(), elegido->id, carpeta(), [this](const PlanLiberar &hecho) {
        plan = hecho;
        if (hecho.archivos < 1)
            return ponAviso(u"No hay nada que borrar sin riesgo. Copia antes las fotos al Mac, o apunta la carpeta a "
                            "donde ya las tengas guardadas."_s);
        confirmandoLiberar_ = true;
        emit cambio();
    });
}

QString Fotos::preguntaDeLiberar() const
{
    if (!plan)
        return {};
    auto texto = u"Se borrarán %1 archivos y recuperarás %2."_s.arg(plan->archivos).arg(Formato::tamano(plan->bytes));
    if (plan->sinCopiar > 0)
        texto += u"\n\nOtros %1 se quedan porque NO están copiados."_s.arg(plan->sinCopiar);
    return texto;
}

void Fotos::dejarDePreguntarPorLiberar()
{
    confirmandoLiberar_ = false;
    emit cambio();
}

void Fotos::preguntarPorTodas(bool si)
{
    confirmandoBorrarTodas_ = si;
    emit cambio();
}

void Fotos::borrarTodas(const QString &udid)
{
    borrarBibliotecaDeFotos(modelo.tarea(), udid, [this](const QString &resumen) { ponAviso(resumen); });
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
