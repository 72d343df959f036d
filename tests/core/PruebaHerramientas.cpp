#include "core/Formato.h"
#include "core/Herramientas.h"
#include "core/Motor.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaHerramientas : public QObject
{
    Q_OBJECT

private slots:
    void elOrdenDeLasCarpetas();
    void loQueNoSePuedeEjecutarNoCuenta();
    void elMotorEmpaquetadoVaPrimero();
    void tamanos_data();
    void tamanos();

private:
    QString crear(const QString &ruta, bool ejecutable)
    {
        const auto entera = carpeta.filePath(ruta);
        QDir().mkpath(QFileInfo(entera).path());
        QFile fichero(entera);
        fichero.open(QIODevice::WriteOnly);
        fichero.setPermissions(ejecutable ? QFile::ReadOwner | QFile::ExeOwner : QFile::ReadOwner);
        return entera;
    }

    QTemporaryDir carpeta;
};

void PruebaHerramientas::elOrdenDeLasCarpetas()
{
    QCOMPARE(
        Herramientas::rutasDeBusqueda(u"/R"_s, u"/casa"_s),
        (QStringList{u"/R/motor/bin"_s, u"/R/motor"_s, u"/usr/local/bin"_s, u"/casa/.local/bin"_s, u"/usr/bin"_s}));
    QCOMPARE(Herramientas::rutasDeBusqueda({}, u"/casa"_s).first(), u"/usr/local/bin"_s);
}

void PruebaHerramientas::loQueNoSePuedeEjecutarNoCuenta()
{
    crear(u"a/idevice_id"_s, false);
    const auto bueno = crear(u"b/idevice_id"_s, true);
    crear(u"c/idevice_id"_s, true);
    QVERIFY(QDir().mkpath(carpeta.filePath(u"a/carpeta"_s)));
    const QStringList rutas{carpeta.filePath(u"a"_s), carpeta.filePath(u"b"_s), carpeta.filePath(u"c"_s)};
    QCOMPARE(Herramientas::localizar(u"idevice_id"_s, rutas), bueno);
    QVERIFY(!Herramientas::localizar(u"carpeta"_s, rutas));
    QVERIFY(!Herramientas::localizar(u"ninguno"_s, rutas));
}

void PruebaHerramientas::elMotorEmpaquetadoVaPrimero()
{
    const auto casa = carpeta.filePath(u"casa"_s);
    const auto recursos = carpeta.filePath(u"R"_s);
    QVERIFY(!Motor::buscarLanzamiento({}, casa));
    const auto python = crear(u"casa/.local/share/pipx/venvs/pymobiledevice3/bin/python3"_s, true);
    QVERIFY(!Motor::buscarLanzamiento(recursos, casa)); // a Python and no script
    const auto guion = crear(u"R/motor.py"_s, false);
    QCOMPARE(Motor::buscarLanzamiento(recursos, casa), (Motor::Lanzamiento{python, {guion}}));
    const auto motor = crear(u"R/motor/motor"_s, true);
    QCOMPARE(Motor::buscarLanzamiento(recursos, casa), (Motor::Lanzamiento{motor, {}}));
}

void PruebaHerramientas::tamanos_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("texto");
    QTest::newRow("nothing") << 0LL << u"0 MB"_s;
    QTest::newRow("a tenth") << 149'999LL << u"0,1 MB"_s;
    QTest::newRow("megabytes") << 812'440'000LL << u"812,4 MB"_s;
    QTest::newRow("would read 1.000 MB") << 999'950'000LL << u"1 GB"_s;
    QTest::newRow("trailing zeros go") << 38'200'000'000LL << u"38,2 GB"_s;
    QTest::newRow("two decimals") << 64'234'000'000LL << u"64,23 GB"_s;
    QTest::newRow("thousands") << 12'345'678'000'000LL << u"12.345,68 GB"_s;
}

void PruebaHerramientas::tamanos()
{
    QFETCH(qint64, bytes);
    QTEST(Formato::tamano(bytes), "texto");
    QCOMPARE(Formato::tamano({}), u"—"_s);
}

QTEST_GUILESS_MAIN(PruebaHerramientas)
#include "PruebaHerramientas.moc"
