#include "contenido/Contenido.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser lector;
    lector.setApplicationDescription(QStringLiteral("Generates the contents of a simulated phone in a new folder."));
    lector.addHelpOption();
    lector.addOptions({{u"carpeta"_s, u"Folder to make."_s, u"DIR"_s},
                       {u"udid"_s, u"Identifier of the phone."_s, u"UDID"_s, u"00008120-001A2D3C0E4C1E9A"_s},
                       {u"nombre"_s, u"Name of the phone."_s, u"NAME"_s, u"iPhone de Marta"_s},
                       {u"semilla"_s, u"Seed: the same one gives the same contents."_s, u"N"_s, u"1"_s},
                       {u"tamano"_s, u"minimo, normal or grande."_s, u"SIZE"_s, u"normal"_s}});
    lector.process(app);

    QTextStream errores(stderr);
    simulado::OpcionesContenido opciones;
    opciones.udid = lector.value(u"udid"_s);
    opciones.nombre = lector.value(u"nombre"_s);
    bool esNumero = false;
    opciones.semilla = lector.value(u"semilla"_s).toUInt(&esNumero);
    const QStringList tamanos{u"minimo"_s, u"normal"_s, u"grande"_s};
    const auto tamano = tamanos.indexOf(lector.value(u"tamano"_s));
    if (lector.value(u"carpeta"_s).isEmpty() || !esNumero || tamano < 0) {
        errores << lector.helpText();
        return 2;
    }
    opciones.tamano = static_cast<simulado::OpcionesContenido::Tamano>(tamano);
    const auto fallo = simulado::generarContenido(lector.value(u"carpeta"_s), opciones);
    if (fallo.isEmpty())
        return 0;
    errores << fallo << '\n';
    return 1;
}
