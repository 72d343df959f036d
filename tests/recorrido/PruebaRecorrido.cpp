#include "app/TrasRefrescar.h"
#include "core/Preferencias.h"
#include "platform/Apariencia.h"
#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/LlaveroPrivado.h"
#include "support/TelefonoSimulado.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"
#include "ventana/Manos.h"

#include <QApplication>
#include <QDir>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto clave = u"rosquillas"_s;

}

/// A first day with the program: its whole window on a true X server, by keyboard and mouse, with the true tools, a
/// true store of secrets and the simulated phone. One step leads to the next.
class PruebaRecorrido : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void saluda();
    void pideLaClaveYCopia();
    void seCancela();
    void copiaHastaElFinal();
    void laCampanaLoCuenta();
    void seBloqueaYSeAbre();
    void devuelveLaCopia();
    void sacaLosDatos();

private:
    bool seLee(const QString &texto) { return Manos::seLee(*ventana, texto); }
    void tecla(Qt::Key cual, Qt::KeyboardModifiers con = {}) { QTest::keyClick(ventana, cual, con); }
    /// By mouse, in the middle of it.
    bool pincha(const QString &nombre)
    {
        auto *control = Manos::control(*ventana, nombre);
        if (control == nullptr)
            return false;
        const auto donde = control->mapToScene({control->width() / 2, control->height() / 2}).toPoint();
        QTest::mouseMove(ventana, donde);
        QTest::mouseClick(ventana, Qt::LeftButton, {}, donde);
        return true;
    }
    QString campana() { return Manos::nombres(*ventana).filter(u"Avisos. "_s).value(0); }
    void frenar(int bytesPorSegundo)
    {
        QVERIFY(telefono
                    ->orden({{u"orden"_s, u"frenar"_s},
                             {u"servicio"_s, u"com.apple.mobilebackup2"_s},
                             {u"bytes_por_segundo"_s, bytesPorSegundo}})[u"bien"_s]
                    .toBool());
    }

    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<LlaveroPrivado> llavero;
    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<Apariencia> apariencia;
    std::unique_ptr<Programa> programa;
    std::unique_ptr<QQmlApplicationEngine> motor;
    QQuickWindow *ventana = nullptr;
};

void PruebaRecorrido::initTestCase()
{
    bus = std::make_unique<BusPrivado>();
    llavero = std::make_unique<LlaveroPrivado>();
    QVERIFY(llavero->listo());
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    QVERIFY(
        telefono->orden({{u"orden"_s, u"clave_de_copia"_s}, {u"clave"_s, QString()}, {u"rondas"_s, 1000}})[u"bien"_s]
            .toBool());
    prepararAspecto();
    apariencia = std::make_unique<Apariencia>();
    programa = std::make_unique<Programa>([](const QString &udid) { return Llavero::consultar(udid).estado; });
    connect(&programa->modelo, &Modelo::refrescado, programa.get(),
            [this](const std::optional<QString> &antes) { trasRefrescar(*programa, antes); });
    motor = std::make_unique<QQmlApplicationEngine>();
    ventana = abrirVentanaPrincipal(*motor, {*programa, *apariencia, {}});
    QVERIFY(ventana && QTest::qWaitForWindowExposed(ventana));
    QCOMPARE(QGuiApplication::platformName(), u"xcb"_s);
    ventana->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(ventana));
}

void PruebaRecorrido::cleanupTestCase()
{
    motor.reset();
    programa.reset();
    apariencia.reset();
    telefono.reset();
    llavero.reset();
    bus.reset();
}

void PruebaRecorrido::saluda()
{
    QTRY_VERIFY_WITH_TIMEOUT(seLee(u"Hola, es la primera vez que conecto este iPhone"_s), 20000);
    QVERIFY(!programa->modelo.tarea().enMarcha()); // nothing runs behind a question
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Hacer una copia de seguridad"_s);
}

void PruebaRecorrido::pideLaClaveYCopia()
{
    frenar(60000);
    tecla(Qt::Key_Return);
    QTRY_VERIFY(seLee(u"Copia cifrada"_s));
    Manos::escribir(*ventana, clave);
    tecla(Qt::Key_Tab);
    QCOMPARE(Manos::nombreDelFoco(*ventana), u"Repítela"_s);
    Manos::escribir(*ventana, clave);
    QVERIFY(pincha(u"Activar y hacer la copia"_s));
    auto &tarea = programa->modelo.tarea();
    QTRY_COMPARE_WITH_TIMEOUT(tarea.titulo(), u"Copia de seguridad completa"_s, 30000);
    QCOMPARE(Llavero::leer(telefono->udid()), clave);
    QTRY_VERIFY_WITH_TIMEOUT(tarea.hechos() > 0 && !tarea.quedan().isEmpty(), 90000);
    QVERIFY(seLee(u"%1% de la copia"_s.arg(tarea.hechos())) ||
            !Manos::nombres(*ventana).filter(u"% de la copia"_s).isEmpty());
    QVERIFY(!Manos::nombres(*ventana).filter(tarea.quedan()).isEmpty());
    QVERIFY(campana().startsWith(u"Avisos. 1 en marcha"_s));
}

void PruebaRecorrido::seCancela()
{
    QVERIFY(pincha(u"Cancelar"_s));
    auto &tarea = programa->modelo.tarea();
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 5000);
    QCOMPARE(tarea.terminadaBien(), false);
    frenar(0);
    QTRY_VERIFY_WITH_TIMEOUT(procesosCon(telefono->udid()).isEmpty(), 30000);
    QVERIFY(pincha(u"Cerrar este aviso"_s));
}

void PruebaRecorrido::copiaHastaElFinal()
{
    tecla(Qt::Key_4, Qt::ControlModifier);
    QTRY_COMPARE(programa->copias.pieDeHacerCopia(), u"Cifrada, incluye todo"_s);
    QVERIFY(pincha(u"Hacer la copia ahora"_s));
    auto &tarea = programa->modelo.tarea();
    QTRY_VERIFY(tarea.enMarcha());
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QVERIFY2(tarea.terminadaBien() == true, qPrintable(tarea.registro().join(u'\n')));
    QTRY_COMPARE(programa->copias.ultimaCopia(), u"hoy"_s);
    QVERIFY(seLee(u"Copia completa guardada"_s));
    QVERIFY(pincha(u"Cerrar este aviso"_s));
}

void PruebaRecorrido::laCampanaLoCuenta()
{
    QVERIFY(pincha(campana()));
    QTRY_VERIFY(!Manos::nombres(*ventana).filter(u"Copia de seguridad completa"_s).isEmpty());
    tecla(Qt::Key_Escape);
    QTRY_VERIFY(Manos::nombres(*ventana).filter(u"Copia de seguridad completa"_s).isEmpty());
}

void PruebaRecorrido::seBloqueaYSeAbre()
{
    tecla(Qt::Key_1, Qt::ControlModifier);
    QTRY_VERIFY(Manos::control(*ventana, u"Bloquear ahora"_s));
    QVERIFY(Manos::pulsar(*ventana, u"Bloquear ahora"_s));
    QVERIFY(programa->cerradura.abierta()); // nobody could open it again
    Preferencias::ponLogico(u"comprobacionVista"_s, true);
    programa->cerradura.abrir();
    QVERIFY(!programa->cerradura.abierta() && !seLee(u"iPhone de Marta"_s));
    Preferencias::ponLogico(u"comprobacionVista"_s, false);
    QVERIFY(pincha(u"Desbloquear"_s));
    QVERIFY(programa->cerradura.abierta() && seLee(u"iPhone de Marta"_s));
}

void PruebaRecorrido::devuelveLaCopia()
{
    tecla(Qt::Key_4, Qt::ControlModifier);
    QVERIFY(pincha(u"Devolver la copia al iPhone"_s));
    QTRY_VERIFY(seLee(u"¿Devolver la copia al iPhone?"_s));
    QVERIFY(pincha(u"Devolver la copia"_s));
    auto &tarea = programa->modelo.tarea();
    QTRY_COMPARE_WITH_TIMEOUT(tarea.titulo(), u"Devolviendo la copia al iPhone"_s, 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QVERIFY2(tarea.terminadaBien() == true, qPrintable(tarea.registro().join(u'\n')));
    const auto casa = telefono->contenido(telefono->udid());
    QCOMPARE(arbol(casa + u"/restaurado/HomeDomain"_s), arbol(casa + u"/dominios/HomeDomain"_s));
}

void PruebaRecorrido::sacaLosDatos()
{
    // The phone is restarting; its data are here.
    tecla(Qt::Key_F10);
    QVERIFY(pincha(u"Sacar mis datos de la copia"_s));
    auto &tarea = programa->modelo.tarea();
    QTRY_COMPARE_WITH_TIMEOUT(tarea.titulo(), u"Sacando tus datos de la copia"_s, 5000);
    QTRY_VERIFY_WITH_TIMEOUT(!tarea.enMarcha(), 60000);
    QVERIFY2(tarea.terminadaBien() == true, qPrintable(tarea.registro().join(u'\n')));
    QVERIFY(QFile::exists(programa->modelo.carpetaDatos() + u"/Llamadas.csv"_s));
}

QTEST_MAIN(PruebaRecorrido)
#include "PruebaRecorrido.moc"
