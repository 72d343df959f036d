#include "app/cli/Ordenes.h"

#include "app/cli/Consola.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <array>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

struct Orden {
    const char *nombre;
    int (*ejecutar)(const OpcionesDeOrden &);
    bool admiteUdid = false;
    bool admiteCarpeta = false;
    const char16_t *pide = nullptr; ///< the word after it that it needs, by its article and name
};

constexpr std::array ordenes{Orden{"dispositivos", &ordenDispositivos},
                             Orden{"buscar", &ordenBuscar, false, false, u"la palabra que buscar"},
                             Orden{"copia", &ordenCopia, true},
                             Orden{"cifrar", &ordenCifrar, true},
                             Orden{"datos", &ordenDatos, true, true},
                             Orden{"fotos", &ordenFotos, true, true, u"qué hacer con las fotos: copiar, plan o listar"},
                             Orden{"diario", &ordenDiario}};

const Orden *buscar(const QString &nombre)
{
    for (const auto &orden : ordenes) {
        if (nombre == QLatin1String(orden.nombre))
            return &orden;
    }
    return nullptr;
}

QString ayuda()
{
    return u"Uso: vellora                        abre la ventana\n"
           "     vellora dispositivos [--json]  los iPhone conectados\n"
           "     vellora copia [--udid U] [--sin-cifrar] [--json]\n"
           "                                    copia de seguridad completa; cifrada, salvo con --sin-cifrar\n"
           "     vellora cifrar [--udid U] [--json]\n"
           "                                    que las copias vayan cifradas; pide la contraseña\n"
           "     vellora datos [--udid U] [--a DIR] [--json]\n"
           "                                    saca de la copia mensajes, WhatsApp, contactos…\n"
           "     vellora fotos copiar|plan|listar [--udid U] [--a DIR] [--json]\n"
           "                                    copia las que falten; qué se podría borrar; qué hay\n"
           "     vellora buscar PALABRA [--json]\n"
           "                                    en todo lo que se ha sacado\n"
           "     vellora diario [--json]        qué ha pasado\n"
           "\n"
           "Termina con 0 si salió bien, 1 si salió mal, 2 si está mal escrita, 3 si falta una pieza."_s;
}

int malUso(const QString &motivo)
{
    Consola::palabras(motivo);
    Consola::palabras(ayuda());
    return SalidaMalUso;
}

} // namespace

int ejecutarOrden(int argc, char **argv)
{
    const QCoreApplication programa(argc, argv);
    QCommandLineParser lector;
    const QCommandLineOption json(u"json"_s);
    const QCommandLineOption udid(u"udid"_s, QString(), u"U"_s);
    const QCommandLineOption carpeta(u"a"_s, QString(), u"DIR"_s);
    const QCommandLineOption pideAyuda(QStringList{u"h"_s, u"help"_s, u"ayuda"_s});
    const QCommandLineOption pideVersion(QStringList{u"v"_s, u"version"_s});
    const QCommandLineOption automatica(u"automatica"_s);
    const QCommandLineOption sinCifrar(u"sin-cifrar"_s);
    lector.addOptions({json, sinCifrar, udid, carpeta, automatica, pideAyuda, pideVersion});
    if (!lector.parse(QCoreApplication::arguments()))
        return malUso(u"No entiendo alguna de las opciones."_s);
    if (lector.isSet(pideAyuda) || lector.isSet(pideVersion)) {
        Consola::resultado(lector.isSet(pideAyuda) ? ayuda() : QStringLiteral("vellora " VELLORA_VERSION));
        return SalidaBien;
    }
    const auto palabras = lector.positionalArguments();
    const auto *orden = palabras.isEmpty() ? nullptr : buscar(palabras.first());
    if (orden != nullptr && orden->pide != nullptr && palabras.size() == 1)
        return malUso(u"Falta %1."_s.arg(QString::fromUtf16(orden->pide)));
    if (orden == nullptr || (palabras.size() > 1 && orden->pide == nullptr))
        return malUso(u"No conozco esa orden: "_s + palabras.join(u' '));
    if (lector.isSet(udid) && !orden->admiteUdid)
        return malUso(u"--udid no va con "_s + palabras.first());
    const bool semanal = lector.isSet(automatica);
    if (semanal && (orden->ejecutar != &ordenCopia || !lector.isSet(udid) || !lector.isSet(carpeta)))
        return malUso(u"--automatica va con copia, --udid y --a"_s);
    if (lector.isSet(carpeta) && !orden->admiteCarpeta && !semanal)
        return malUso(u"--a no va con "_s + palabras.first());
    if (lector.isSet(sinCifrar) && orden->ejecutar != &ordenCopia)
        return malUso(u"--sin-cifrar no va con "_s + palabras.first());
    OpcionesDeOrden opciones;
    opciones.sinCifrar = lector.isSet(sinCifrar);
    opciones.json = lector.isSet(json);
    if (lector.isSet(udid))
        opciones.udid = lector.value(udid);
    if (lector.isSet(carpeta))
        opciones.carpeta = lector.value(carpeta);
    opciones.automatica = semanal;
    opciones.palabra = palabras.mid(1).join(u' ');
    return orden->ejecutar(opciones);
}

} // namespace vellora
