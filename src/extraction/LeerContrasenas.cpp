#include "core/CarpetaDeDestino.h"
#include "core/EscritorDeTexto.h"
#include "core/Motor.h"
#include "core/Tarea.h"
#include "extraction/Contrasenas.h"

#include <QFileInfo>
#include <QJsonArray>

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// What one reading has brought so far.
struct Lectura {
    ClavesListas listas;
    qint64 dichas = -1; ///< how many the engine says that it told
    std::optional<ResultadoClaves> otra;
};

void tomar(const QJsonArray &lista, ClavesListas &listas)
{
    for (const auto &valor : lista) {
        if (!valor[u"donde"_s].isString())
            continue;
        listas.claves.append({QUuid::createUuid(), valor[u"tipo"_s].toString(u"app"_s), valor[u"donde"_s].toString(),
                              valor[u"usuario"_s].toString(), valor[u"clave"_s].toString()});
    }
}

void alAvisar(Tarea &tarea, Lectura &lectura, const Motor::Aviso &aviso)
{
    if (aviso.tipo == "contrasenas"_L1) {
        tomar(aviso.datos[u"lista"_s].toArray(), lectura.listas);
        tarea.ponDetalle(u"%1 contraseñas"_s.arg(lectura.listas.claves.size()));
    } else if (aviso.tipo == "fin"_L1) {
        lectura.dichas = aviso.entero("cuantas"_L1).value_or(0);
        lectura.listas.cerradas = aviso.entero("cerradas"_L1).value_or(0);
    } else if (aviso.tipo == "sin_cifrar"_L1) {
        lectura.otra = CopiaSinCifrar{};
        tarea.ponDetalle(u"La copia no está cifrada"_s);
    } else if (aviso.tipo == "error"_L1) {
        const auto motivo = aviso.texto("motivo"_L1).value_or(QString());
        lectura.otra = FalloDeClaves{motivo};
        tarea.ponDetalle(motivo);
    }
}

ResultadoClaves comoAcabo(const Lectura &lectura, int codigo)
{
    if (lectura.otra)
        return *lectura.otra;
    // Fewer than were told would be a list that looks whole and is not.
    if (codigo != 0 || lectura.dichas > lectura.listas.claves.size())
        return FalloDeClaves{u"No se pudieron leer todas las contraseñas. Vuelve a intentarlo."_s};
    return lectura.listas;
}

} // namespace

QString ClaveGuardada::icono() const
{
    if (tipo == "wifi"_L1)
        return u"wifi"_s;
    return tipo == "internet"_L1 ? u"globe"_s : u"app.badge"_s;
}

QString ClaveGuardada::comoSeLlama() const
{
    if (tipo == "wifi"_L1)
        return u"Red wifi"_s;
    return tipo == "internet"_L1 ? u"Web"_s : u"App"_s;
}

void leerContrasenas(Tarea &tarea, const QString &carpetaCopias, const QString &udid,
                     const std::function<void(const ResultadoClaves &)> &resultado)
{
    const auto titulo = u"Abriendo tus contraseñas"_s;
    const auto lectura = std::make_shared<Lectura>();
    tarea.empezar(titulo, u"Tarda unos segundos."_s);
    tarea.muestra();
    if (!Motor::disponible())
        resultado(FalloDeClaves{u"No encuentro el motor del iPhone dentro de la app."_s});
    tarea.lanzarMotorPublico(
        {u"contrasenas"_s, udid, carpetaCopias + u'/' + udid}, titulo, false,
        [&tarea, lectura](const Motor::Aviso &aviso) { alAvisar(tarea, *lectura, aviso); },
        [&tarea, lectura, resultado](int codigo) {
            const auto final = comoAcabo(*lectura, codigo);
            tarea.cerrar(!std::holds_alternative<FalloDeClaves>(final));
            resultado(final);
        },
        Tarea::LoDemas::Callado);
}

std::optional<QString> exportarContrasenas(const QList<ClaveGuardada> &claves, const QString &fichero)
{
    const QFileInfo info(fichero);
    auto carpeta = CarpetaDeDestino::abrir(info.absolutePath());
    if (!carpeta)
        return carpeta.motivo();
    const auto campo = [](QString texto) {
        return texto.replace(u';', u',').replace(u'\n', u' ').toUtf8();
    };
    // The folder makes its files for the owner alone.
    EscritorDeTexto salida(*carpeta, info.fileName().toUtf8());
    salida << "Tipo;Dónde;Usuario;Contraseña\n";
    for (const auto &una : claves)
        salida << una.comoSeLlama().toUtf8() << ";" << campo(una.donde) << ";" << campo(una.usuario) << ";"
               << campo(una.clave) << "\n";
    if (!salida.cerrar())
        return u"no se ha podido escribir el archivo."_s;
    return {};
}

} // namespace vellora
