#include "session/Dispositivo.h"
#include "ui/componentes/Icono.h"
#include "ui/componentes/Tema.h"
#include "ui/sesion/Rotulos.h"
#include "ui/ventana/Secciones.h"

#include <QFile>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What the window decides and says, without a window.
class PruebaAspecto : public QObject
{
    Q_OBJECT

private slots:
    void contraste_data();
    void contraste();
    void dibujoDeCadaSeccion();
    void ordenDeLaLista();
    void atajos();
    void contenido();
    void rotulosDeUnIPhone();
    void rotulosSinDatos();
};

namespace
{

/// Relative luminance and ratio as the Web Content Accessibility Guidelines 2.1 define them.
double luminancia(const QColor &color)
{
    const auto lineal = [](double canal) {
        return canal <= 0.04045 ? canal / 12.92 : std::pow((canal + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * lineal(color.redF()) + 0.7152 * lineal(color.greenF()) + 0.0722 * lineal(color.blueF());
}

double contrasteEntre(const QColor &uno, const QColor &otro)
{
    const auto claro = std::max(luminancia(uno), luminancia(otro));
    const auto oscuro = std::min(luminancia(uno), luminancia(otro));
    return (claro + 0.05) / (oscuro + 0.05);
}

} // namespace

void PruebaAspecto::contraste_data()
{
    QTest::addColumn<QByteArray>("letra");
    QTest::addColumn<QByteArray>("suelo");
    const QList<std::pair<QByteArray, QList<QByteArray>>> usos{
        {"texto", {"fondo", "lateral", "tarjeta", "fondoAviso", "fondoMal", "acentoSuave"}},
        {"suave", {"fondo", "lateral", "tarjeta"}},
        {"acentoTexto", {"tarjeta", "acentoSuave"}},
        {"sobreAcento", {"acento"}}};
    for (const auto &[letra, suelos] : usos) {
        for (const auto &suelo : suelos)
            QTest::addRow("%s on %s", letra.constData(), suelo.constData()) << letra << suelo;
    }
}

void PruebaAspecto::contraste()
{
    QFETCH(QByteArray, letra);
    QFETCH(QByteArray, suelo);
    auto &tema = Tema::unico();
    for (const auto cual : {Tema::Eleccion::Claro, Tema::Eleccion::Oscuro}) {
        tema.elegir(cual);
        const auto hay = contrasteEntre(tema.property(letra).value<QColor>(), tema.property(suelo).value<QColor>());
        QVERIFY2(hay >= 4.5, qPrintable(u"%1 to 1, %2"_s.arg(hay).arg(tema.oscuro() ? u"dark"_s : u"light"_s)));
    }
    tema.elegir(Tema::Eleccion::Sistema);
}

void PruebaAspecto::dibujoDeCadaSeccion()
{
    for (int i = 0; i <= Secciones::Actualizar; ++i) {
        const auto simbolo = Secciones::simbolo(static_cast<Secciones::Seccion>(i));
        QVERIFY2(QFile::exists(Icono::ficheroDe(simbolo)), qPrintable(simbolo));
    }
    // Those of the job, the journal and the other views, which pick them while they run.
    for (const auto &simbolo :
         {u"bell"_s, u"bell.badge"_s, u"checkmark.circle"_s, u"checkmark.circle.fill"_s,
          u"exclamationmark.triangle.fill"_s, u"xmark.circle"_s, u"xmark.circle.fill"_s, u"clock"_s, u"lock.fill"_s,
          u"wrench.and.screwdriver"_s, u"cable.connector.horizontal"_s, u"iphone.gen3.badge.play"_s,
          u"bolt.horizontal.circle"_s, u"battery.0"_s, u"battery.50"_s, u"battery.100"_s, u"battery.100.bolt"_s})
        QVERIFY2(QFile::exists(Icono::ficheroDe(simbolo)), qPrintable(simbolo));
}

void PruebaAspecto::ordenDeLaLista()
{
    const Secciones filas;
    QStringList vistos;
    for (int i = 0; i < filas.rowCount(); ++i) {
        const auto fila = filas.index(i);
        const auto cabecera = filas.data(fila, Secciones::PapelCabecera).toString();
        if (!cabecera.isEmpty())
            vistos << u"-- "_s + cabecera;
        vistos << filas.data(fila, Secciones::PapelTitulo).toString();
    }
    const auto esperados =
        u"Resumen|-- FOTOS|Fotos|Buscar fotos|Personas|-- COPIAS Y DATOS|Copias y datos|Buscar en todo|"
        "En números|-- APPS Y ESPACIO|Apps|Espacio|Limpieza|-- CONTACTOS Y SEGURIDAD|Contactos|"
        "Contraseñas|Seguridad|Familia|-- MÁS|Pantalla|Terminal|Actualizar|Ajustes|Ayuda y legal"_s;
    QCOMPARE(vistos.join(u'|'), esperados);
}

void PruebaAspecto::atajos()
{
    QCOMPARE(Secciones::atajo(Secciones::Resumen), u"1"_s);
    QCOMPARE(Secciones::atajo(Secciones::Copias), u"4"_s);
    QCOMPARE(Secciones::atajo(Secciones::Contactos), u"9"_s);
    QVERIFY(!Secciones::atajo(Secciones::Claves));
    QCOMPARE(Secciones::porAtajo(Qt::Key_4), int(Secciones::Copias));
    QCOMPARE(Secciones::porAtajo(Qt::Key_3), -1); // still to come
    QCOMPARE(Secciones::porAtajo(Qt::Key_0), -1);
    QCOMPARE(Secciones::porAtajo(Qt::Key_A), -1);
}

void PruebaAspecto::contenido()
{
    using S = Secciones;
    QCOMPARE(S::contenido(S::Copias, false, true), S::FaltanHerramientas);
    QCOMPARE(S::contenido(S::Resumen, true, false), S::SinIPhone);
    QCOMPARE(S::contenido(S::Resumen, true, true), S::LaSeccion);
    for (const auto sinIPhone : {S::Fotos, S::Copias, S::Limpieza, S::Ajustes, S::Contactos})
        QCOMPARE(S::contenido(sinIPhone, true, false), S::LaSeccion);
    QCOMPARE(S::enumerar({u"libimobiledevice"_s, u"pymobiledevice3"_s}), u"libimobiledevice y pymobiledevice3"_s);
}

void PruebaAspecto::rotulosDeUnIPhone()
{
    Dispositivo iphone;
    iphone.id = u"00008120-000A1B2C3D4C1E9A"_s;
    iphone.modeloCrudo = u"iPhone15,2"_s;
    iphone.sistema = u"17.5.1"_s;
    iphone.bateria = 82;
    iphone.cargando = true;
    iphone.libresBytes = 38'200'000'000;
    iphone.totalBytes = 256'000'000'000;
    QCOMPARE(Rotulos::resumen(iphone), u"iPhone 14 Pro · iOS 17.5.1 · …4C1E9A"_s);
    QCOMPARE(Rotulos::bateria(iphone), u"82 % · cargando"_s);
    QCOMPARE(Rotulos::libres(iphone), u"38,2 GB libres"_s);
    QCOMPARE(Rotulos::capacidad(iphone), u"256 GB"_s);
    QCOMPARE(qRound(Rotulos::ocupado(iphone) * 1000), 851);
    QVERIFY(!Rotulos::bateriaBaja(iphone));
    iphone.bateria = 20;
    QVERIFY(!Rotulos::bateriaBaja(iphone)); // it is charging
    iphone.cargando = false;
    QVERIFY(Rotulos::bateriaBaja(iphone));
    QCOMPARE(Rotulos::simboloDeBateria(iphone), u"battery.0"_s);
    iphone.libresBytes = 300'000'000'000; // more than the phone holds
    QCOMPARE(Rotulos::ocupado(iphone), 0.0);
}

void PruebaAspecto::rotulosSinDatos()
{
    Dispositivo iphone;
    iphone.id = u"00008120-000A1B2C3D4C1E9A"_s;
    iphone.modeloCrudo = u"desconocido"_s;
    iphone.sistema = u"—"_s;
    QCOMPARE(Rotulos::resumen(iphone), u"desconocido · …4C1E9A"_s);
    QCOMPARE(Rotulos::bateria(iphone), QString());
    QCOMPARE(Rotulos::libres(iphone), QString());
    QCOMPARE(Rotulos::ocupado(iphone), -1.0);
    iphone.libresBytes = 1;
    iphone.totalBytes = 0;
    QCOMPARE(Rotulos::ocupado(iphone), -1.0);
}

QTEST_GUILESS_MAIN(PruebaAspecto)
#include "PruebaAspecto.moc"
