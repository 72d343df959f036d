#include "app/cli/Consola.h"
#include "app/cli/Ordenes.h"
#include "extraction/BuscadorGlobal.h"
#include "session/Carpetas.h"
#include "session/Detector.h"

#include <QJsonArray>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr int letrasQueHacenFalta = 2;

/// What is looked through is what the window would look through; where there is one phone's folder alone, nobody needs
/// to wait for a phone.
std::optional<Dispositivo> elegido()
{
    const auto conectados = Carpetas::hayVarias() ? Detector::conectados() : QStringList();
    return conectados.isEmpty() ? std::nullopt : Detector::leer(conectados.first());
}

} // namespace

int ordenBuscar(const OpcionesDeOrden &opciones)
{
    const auto palabra = opciones.palabra.trimmed();
    if (palabra.size() < letrasQueHacenFalta) {
        Consola::palabras(u"Escribe al menos dos letras."_s);
        return SalidaMalUso;
    }
    const auto telefono = elegido();
    const auto indice = Carpetas::fotosParaIA(telefono) + u"/.indice-fotos.json"_s;
    const auto hallados = BuscadorGlobal::buscarEn(palabra, Carpetas::datos(telefono), indice);
    QJsonArray lista;
    for (const auto &uno : hallados) {
        if (opciones.json)
            lista << QJsonObject{{u"tipo"_s, uno.tipo},
                                 {u"titulo"_s, uno.titulo},
                                 {u"extracto"_s, uno.extracto},
                                 {u"fichero"_s, uno.fichero}};
        else
            Consola::resultado(QStringList{uno.tipo, uno.titulo, uno.extracto, uno.fichero});
    }
    if (opciones.json)
        Consola::resultado(QJsonDocument(lista));
    else if (hallados.isEmpty())
        Consola::palabras(u"No he encontrado «%1»"_s.arg(palabra));
    return SalidaBien;
}

} // namespace vellora
