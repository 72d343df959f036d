#include "platform/AgendaDelMac.h"

#include <QCoreApplication>
#include <QLibrary>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace vellora::AgendaDelMac
{

namespace
{

const auto sinPreparar = u"No se pudo preparar el cambio."_s;

using Hacer = LibretaDelEscritorio *(*)();

/// Absent where the part cannot be loaded or the service does not answer, which is asked again next time.
LibretaDelEscritorio *libreta()
{
    static const std::unique_ptr<LibretaDelEscritorio> suya = [] {
        QLibrary parte(QCoreApplication::applicationDirPath() + u"/../PlugIns/libvellora_agenda.so"_s);
        const auto hacer = reinterpret_cast<Hacer>(parte.resolve("vellora_agenda"));
        return std::unique_ptr<LibretaDelEscritorio>(hacer ? hacer() : nullptr);
    }();
    return suya && suya->abrir() ? suya.get() : nullptr;
}

bool seParecen(const FichaDeAgenda &una, const QString &nombre, const QString &apellidos, const QStringList &telefonos)
{
    if (!(nombre.isEmpty() && apellidos.isEmpty()) && una.nombre == nombre && una.apellidos == apellidos)
        return true;
    return std::any_of(una.telefonos.begin(), una.telefonos.end(), [&](const QString &suyo) {
        const auto cifras = soloCifras(suyo);
        return !cifras.isEmpty() && std::any_of(telefonos.begin(), telefonos.end(),
                                                [&](const QString &otro) { return soloCifras(otro) == cifras; });
    });
}

/// Whether a person has everything that the other record tells.
bool loTieneTodo(const FichaDeAgenda &una, const FichaDeAgenda &otra)
{
    const auto estan = [](const QStringList &suyos, const QStringList &buscados, auto igual) {
        return std::all_of(buscados.begin(), buscados.end(), [&](const QString &buscado) {
            return std::any_of(suyos.begin(), suyos.end(), [&](const QString &suyo) { return igual(suyo, buscado); });
        });
    };
    const auto mismoNumero = [](const QString &suyo, const QString &buscado) {
        return soloCifras(suyo) == soloCifras(buscado);
    };
    const auto mismoCorreo = [](const QString &suyo, const QString &buscado) {
        return suyo.compare(buscado, Qt::CaseInsensitive) == 0;
    };
    return una.nombre == otra.nombre && una.apellidos == otra.apellidos && una.empresa == otra.empresa &&
           estan(una.telefonos, otra.telefonos, mismoNumero) && estan(una.correos, otra.correos, mismoCorreo);
}

std::optional<LibretaDelEscritorio::Persona> parecida(LibretaDelEscritorio &en, const QString &nombre,
                                                      const QString &apellidos, const QStringList &telefonos)
{
    const auto personas = en.todas();
    if (!personas)
        return {};
    const auto hallada = std::find_if(personas->begin(), personas->end(), [&](const auto &una) {
        return seParecen(una.ficha, nombre, apellidos, telefonos);
    });
    return hallada == personas->end() ? std::nullopt : std::optional(*hallada);
}

} // namespace

bool pedirPermiso()
{
    return libreta() != nullptr;
}

bool yaEsta(const FichaDeAgenda &ficha)
{
    auto *en = libreta();
    const auto personas = en ? en->todas() : std::nullopt;
    return personas && std::any_of(personas->begin(), personas->end(),
                                   [&ficha](const auto &una) { return loTieneTodo(una.ficha, ficha); });
}

std::optional<QString> guardar(const FichaDeAgenda &ficha)
{
    auto *en = libreta();
    return en && en->anadir(ficha) ? std::nullopt : std::optional(sinPreparar);
}

std::optional<FichaDeAgenda> encontrarParecido(const QString &nombre, const QString &apellidos,
                                               const QStringList &telefonos)
{
    auto *en = libreta();
    const auto persona = en ? parecida(*en, nombre, apellidos, telefonos) : std::nullopt;
    return persona ? std::optional(persona->ficha) : std::nullopt;
}

std::optional<FichaDeAgenda> buscar(const FichaDeAgenda &ficha)
{
    return encontrarParecido(ficha.nombre, ficha.apellidos, ficha.telefonos);
}

std::optional<QString> actualizar(const FichaDeAgenda &original, const FichaDeAgenda &nueva)
{
    auto *en = libreta();
    const auto persona = en ? parecida(*en, original.nombre, original.apellidos, original.telefonos) : std::nullopt;
    return persona && en->cambiar(persona->id, nueva, original) ? std::nullopt : std::optional(sinPreparar);
}

Borrado borrar(const FichaDeAgenda &ficha)
{
    auto *en = libreta();
    if (!en)
        return {false, u"No se pudo preparar el borrado."_s};
    const auto persona = parecida(*en, ficha.nombre, ficha.apellidos, ficha.telefonos);
    if (!persona)
        return {};
    if (!en->quitar(persona->id))
        return {true, u"No se pudo preparar el borrado."_s};
    return {true, {}};
}

} // namespace vellora::AgendaDelMac
