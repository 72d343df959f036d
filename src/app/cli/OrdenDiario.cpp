#include "app/cli/Consola.h"
#include "app/cli/Ordenes.h"
#include "core/FicheroDelDiario.h"
#include "session/Migracion.h"

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

QStringList enPalabras(const Actividad &una)
{
    auto cuando = una.cuandoEnPalabras();
    if (const auto duracion = una.duracion())
        cuando += u" (%1)"_s.arg(*duracion);
    QStringList trozos{cuando, textoDeEstado(una.estado), una.titulo, una.detalle};
    if (una.carpeta)
        trozos << *una.carpeta;
    return trozos;
}

} // namespace

int ordenDiario(const OpcionesDeOrden &opciones)
{
    Migracion::alArrancar();
    const auto lista = Diario().lista();
    if (opciones.json) {
        Consola::resultado(QString::fromUtf8(diarioEnJson(lista)));
        return SalidaBien;
    }
    for (const auto &una : lista)
        Consola::resultado(enPalabras(una));
    if (lista.isEmpty())
        Consola::palabras(u"Todavía no has hecho nada"_s);
    return SalidaBien;
}

} // namespace vellora
