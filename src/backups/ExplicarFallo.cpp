#include "backups/ExplicarFallo.h"

#include <QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto otraCopia =
    u"El iPhone no ha podido empezar la copia. Casi siempre es porque YA HAY OTRA COPIA en marcha (el iPhone solo "
    u"atiende "
    "una a la vez), o porque se ha bloqueado. Espera a que termine la otra, o desbloquéalo y vuelve a intentarlo."_s;
const auto bloqueado = u"El iPhone estaba bloqueado. Desbloquéalo con tu código y dale otra vez."_s;
const auto perdido = u"He perdido el iPhone. Comprueba el cable."_s;
const auto noCabe = u"No cabe en el disco del Mac."_s;
const auto contrasena = u"Problema con la contraseña de la copia cifrada."_s;
const auto cualquiera = u"La copia no se pudo completar. En «Ver detalles» está lo que dijo el sistema."_s;
const auto sinConfianza = u"El iPhone no me deja entrar. Desbloquéalo y, si te lo pregunta, toca «Confiar»."_s;

struct Regla {
    QLatin1String texto; ///< looked for in lower case
    const QString &sentencia;
};

/// The first that is found decides.
const std::array reglas{
    Regla{"protocol version exchange"_L1, otraCopia},
    Regla{"device is locked"_L1, bloqueado},
    Regla{"passcode"_L1, bloqueado},
    Regla{"no device found"_L1, perdido},
    Regla{"device not found"_L1, perdido},
    Regla{"no space"_L1, noCabe},
    Regla{"enospc"_L1, noCabe},
    Regla{"password"_L1, contrasena},
    Regla{"encrypt"_L1, contrasena},
};

/// Codes of the backup service (MBErrorDomain) and of lockdownd, as the tool prints them.
const std::array codigos{
    Regla{"(mberrordomain/208)"_L1, bloqueado},          Regla{"lockdownd, error code -17"_L1, bloqueado},
    Regla{"lockdownd, error code -18"_L1, sinConfianza}, Regla{"lockdownd, error code -19"_L1, sinConfianza},
    Regla{"lockdownd, error code -21"_L1, sinConfianza}, Regla{"(mberrordomain/105)"_L1, noCabe},
    Regla{"(mberrordomain/207)"_L1, contrasena},
};

template <typename Reglas> std::optional<QString> primera(const Reglas &lista, const QStringList &lineas)
{
    const auto texto = lineas.join(u' ').toLower();
    for (const auto &regla : lista) {
        if (texto.contains(regla.texto))
            return regla.sentencia;
    }
    return {};
}

} // namespace

std::optional<qint64> porcentajeGlobal(const QString &linea)
{
    static const QRegularExpression forma(u"(\\d{1,3})% Finished"_s);
    const auto hallado = forma.match(linea);
    return hallado.hasMatch() ? std::optional(hallado.captured(1).toLongLong()) : std::nullopt;
}

std::optional<qint64> porcentajeEn(const QString &linea)
{
    static const QRegularExpression forma(u"(\\d{1,3})%"_s);
    const auto hallado = forma.match(linea);
    return hallado.hasMatch() ? std::optional(hallado.captured(1).toLongLong()) : std::nullopt;
}

QString explicar(const QStringList &lineas)
{
    return primera(reglas, lineas).value_or(cualquiera);
}

QStringList sinElAnuncio(QStringList lineas)
{
    lineas.removeIf([](const QString &una) { return una.startsWith("Backup will be "_L1); });
    return lineas;
}

std::optional<QString> causaCierta(const QStringList &lineas)
{
    return primera(codigos, lineas);
}

QString sentenciaDeIPhonePerdido()
{
    return perdido;
}

QString sentenciaDeDiscoLleno()
{
    return noCabe;
}

} // namespace vellora
