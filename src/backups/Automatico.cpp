#include "backups/Automatico.h"

#include "core/Ejecutor.h"
#include "core/Herramientas.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vellora::Automatico
{

namespace
{

constexpr double segundosDelSistema = 15.0;
// A large phone over a slow cable takes a night.
constexpr int horasDeLimite = 12;

// The program itself does the rest; this only keeps from starting it where no phone is. A run that hangs is ended, and
// has a minute to end in order.
const auto plantilla = uR"sh(#!/bin/bash
# Copia de seguridad automática de "Vellora".
# Lo creó la app; se quita desde la propia app.
REG="REGISTRO"
DESTINO="DESTINO_RUTA"
UDID="EL_UDID"

# ¿Está el iPhone conectado y despierto?
if ! timeout 60 "INFO" -u "$UDID" -k DeviceName >/dev/null 2>&1; then
  exit 0    # no está: no se dice nada, ya se intentará luego
fi

# Si toca ya o no, y si salió bien, lo mira el programa, igual que con la ventana abierta.
exec timeout --kill-after=60 LIMITEh "VELLORA" copia --automatica --udid "$UDID" --a "$DESTINO" >> "$REG" 2>&1
)sh"_s;

QString rutaDelRegistro()
{
    return carpetaDeApoyo() + u"/copias.log"_s;
}

QString carpetaDeUnidades()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/systemd/user"_s;
}

QString unidad(const QString &clase)
{
    return carpetaDeUnidades() + u'/' + etiqueta() + u'.' + clase;
}

/// As it stands between double quotes in the shell.
QString entreComillas(QString texto)
{
    for (const auto cual : u"\\\"$`"_s)
        texto.replace(cual, u'\\' + QString(cual));
    return texto;
}

/// One word of a command in a unit file.
QString palabraDeUnidad(QString texto)
{
    texto.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s).replace(u'%', u"%%"_s).replace(u'$', u"$$"_s);
    return u'"' + texto + u'"';
}

/// Absent when the whole text stands under its name; otherwise what the system says.
std::optional<QString> escribir(const QString &ruta, const QString &texto)
{
    QSaveFile fichero(ruta);
    fichero.setDirectWriteFallback(false);
    const auto bytes = texto.toUtf8();
    if (fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size() && fichero.commit())
        return {};
    return fichero.errorString();
}

/// What the system manager says, with the word "error" in it when it refused.
QString sistema(const QStringList &orden)
{
    const QStringList porLaConsola{u"-c"_s, u"systemctl --user \"$@\" 2>&1 || echo error"_s, u"sh"_s};
    return Ejecutor::rapido(u"/bin/sh"_s, porLaConsola + orden, segundosDelSistema).trimmed();
}

} // namespace

QString carpetaDeApoyo()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Vellora"_s;
}

const QString &etiqueta()
{
    static const auto nombre = u"es.zarabel.vellora.copia"_s;
    return nombre;
}

bool activa()
{
    return QFile::exists(unidad(u"timer"_s));
}

QString registro()
{
    QFile fichero(rutaDelRegistro());
    return fichero.open(QIODevice::ReadOnly) ? QString::fromUtf8(fichero.readAll()) : QString();
}

QString ultimoResultado()
{
    static const QRegularExpression forma(u"^(\\d{4}-\\d\\d-\\d\\d) (\\d\\d:\\d\\d)  (.*)$"_s);
    QString frase;
    QString razon;
    QString cuando;
    const auto lineas = registro().split(u'\n', Qt::SkipEmptyParts);
    for (const auto &linea : lineas) {
        const auto hallado = forma.match(linea);
        if (!hallado.hasMatch()) {
            if (frase == fraseDeEmpezar())
                razon = linea;
            continue;
        }
        frase = hallado.captured(3);
        const auto dia = QDate::fromString(hallado.captured(1), Qt::ISODate);
        cuando = u"el %1 a las %2"_s.arg(QLocale(QLocale::Spanish).toString(dia, u"d MMM"_s), hallado.captured(2));
    }
    if (frase == fraseDeBien())
        return u"La última, %1, terminó bien."_s.arg(cuando);
    if (frase == fraseDeSinComprobar())
        return u"La última, %1, terminó, pero no se pudo comprobar."_s.arg(cuando);
    if (frase == fraseDeFallo())
        return u"La última, %1, no se pudo completar. %2"_s.arg(cuando, razon).trimmed();
    if (frase == fraseDeEmpezar())
        return u"La última empezó %1 y no consta que acabara."_s.arg(cuando);
    return {};
}

QString rutaDelGuion()
{
    return carpetaDeApoyo() + u"/copia-automatica.sh"_s;
}

QString guion(const QString &udid, const QString &destino, const QString &info, const QString &programa)
{
    auto texto = plantilla;
    // The numbers first: what comes from outside could hold a word of the template.
    texto.replace("LIMITE"_L1, QString::number(horasDeLimite));
    const QList<QPair<QString, QString>> huecos{{u"\"REGISTRO\""_s, rutaDelRegistro()},
                                                {u"\"EL_UDID\""_s, udid},
                                                {u"\"INFO\""_s, info},
                                                {u"\"VELLORA\""_s, programa},
                                                {u"\"DESTINO_RUTA\""_s, destino}};
    for (const auto &[hueco, valor] : huecos)
        texto.replace(hueco, u'"' + entreComillas(valor) + u'"');
    return texto;
}

QString servicio()
{
    return u"[Unit]\n"
           "Description=Copia de seguridad semanal del iPhone (Vellora)\n\n"
           "[Service]\n"
           "Type=oneshot\n"
           "ExecStart=/bin/bash %1\n"
           "Nice=5\n"
           "IOSchedulingClass=idle\n"_s.arg(palabraDeUnidad(rutaDelGuion()));
}

QString temporizador(qint64 cadaHoras)
{
    // By the calendar and not by time since the start: what was missed while the computer slept is made up for.
    return u"[Unit]\n"
           "Description=Mira cada pocas horas si toca la copia semanal del iPhone (Vellora)\n\n"
           "[Timer]\n"
           "OnCalendar=*-*-* 00/%1:00:00\n"
           "Persistent=true\n\n"
           "[Install]\n"
           "WantedBy=timers.target\n"_s.arg(cadaHoras);
}

std::optional<QString> activar(const QString &udid, const QString &destino, qint64 cadaHoras)
{
    const auto &info = Herramientas::ideviceInfo();
    if (!Herramientas::idevicebackup2() || !info)
        return u"No encuentro las herramientas del iPhone."_s;
    QDir().mkpath(carpetaDeApoyo());
    QDir().mkpath(carpetaDeUnidades());
    if (const auto fallo =
            escribir(rutaDelGuion(), guion(udid, destino, *info, QCoreApplication::applicationFilePath())))
        return u"No pude escribir el encargo: "_s + *fallo;
    constexpr auto leeYEjecuta = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    QFile::setPermissions(rutaDelGuion(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | leeYEjecuta);
    if (escribir(unidad(u"service"_s), servicio()) || escribir(unidad(u"timer"_s), temporizador(cadaHoras)))
        return u"No pude crear el encargo del sistema."_s;
    sistema({u"daemon-reload"_s});
    const auto dicho = sistema({u"enable"_s, u"--now"_s, etiqueta() + u".timer"_s});
    if (dicho.contains("error"_L1, Qt::CaseInsensitive))
        return u"El sistema no aceptó el encargo: "_s + dicho;
    return {};
}

void desactivar()
{
    sistema({u"disable"_s, u"--now"_s, etiqueta() + u".timer"_s});
    QFile::remove(unidad(u"timer"_s));
    QFile::remove(unidad(u"service"_s));
    sistema({u"daemon-reload"_s});
}

} // namespace vellora::Automatico
