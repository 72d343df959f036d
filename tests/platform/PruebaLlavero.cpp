#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/LlaveroPrivado.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto udid = u"00008120-00061C2A3E4C1E9A"_s;

/// The store as another program of the session sees it.
QByteArray herramienta(const QStringList &argumentos, const QByteArray &entrada = {})
{
    QProcess proceso;
    proceso.start(u"secret-tool"_s, argumentos);
    proceso.write(entrada);
    proceso.waitForBytesWritten();
    proceso.closeWriteChannel();
    proceso.waitForFinished();
    return proceso.readAllStandardOutput();
}

QByteArray guardado(const QString &servicio)
{
    return herramienta({u"lookup"_s, u"service"_s, servicio, u"account"_s, udid});
}

void guardarFuera(const QString &servicio, const QByteArray &valor)
{
    herramienta({u"store"_s, u"--label=x"_s, u"service"_s, servicio, u"account"_s, udid}, valor);
}

const auto actual = u"es.vellora.copia"_s;
const auto anterior = u"es.zarabel.tramuja.copia"_s;

} // namespace

/// A true secret service, on a bus of its own.
class PruebaLlavero : public QObject
{
    Q_OBJECT

private slots:
    void sinNadie();
    void idaYVuelta_data();
    void idaYVuelta();
    void unaSolaPorTelefono();
    void laDelServicioAnteriorSeMuda();
    void loQueNoEsTextoNoSeLee();
    void borrarQuitaLasDos();
    void cerradoEsComoVacio();
    void sinServicio();

private:
    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<LlaveroPrivado> llavero;
};

void PruebaLlavero::sinNadie()
{
    // No session bus at all; the ones that follow have one.
    QVERIFY(!Llavero::disponible());
    QVERIFY(!Llavero::guardar(u"secreta"_s, udid));
    QVERIFY(!Llavero::leer(udid) && !Llavero::hayClave(udid) && !Llavero::borrar(udid));
    bus = std::make_unique<BusPrivado>();
    llavero = std::make_unique<LlaveroPrivado>();
    QVERIFY(llavero->listo());
    QVERIFY(Llavero::disponible());
    QVERIFY(!Llavero::hayClave(udid));
}

void PruebaLlavero::idaYVuelta_data()
{
    QTest::addColumn<QString>("clave");
    QTest::newRow("plain") << u"rosquillas"_s;
    QTest::newRow("blanks around") << u"  dos  "_s;
    QTest::newRow("letters of all kinds") << u"ñandú 漢字 😀 \"'\\$`"_s;
    QTest::newRow("lines") << u"una\ndos\r\n"_s;
    QTest::newRow("1,000 characters") << QString(1000, u'ñ');
}

void PruebaLlavero::idaYVuelta()
{
    QFETCH(QString, clave);
    QVERIFY(Llavero::guardar(clave, udid));
    QCOMPARE(Llavero::leer(udid), std::optional(clave));
    QVERIFY(Llavero::hayClave(udid));
    QVERIFY(!Llavero::hayClave(udid + u"X"_s));
    QCOMPARE(QString::fromUtf8(guardado(actual)), clave);
}

void PruebaLlavero::unaSolaPorTelefono()
{
    QVERIFY(Llavero::guardar(u"primera"_s, udid));
    QVERIFY(Llavero::guardar(u"segunda"_s, udid));
    QVERIFY(!Llavero::guardar(u"con\0cero"_s, udid)); // kept as it was
    QCOMPARE(Llavero::leer(udid), std::optional(u"segunda"_s));
    QVERIFY(Llavero::borrar(udid));
    QVERIFY(!Llavero::leer(udid));
    QVERIFY(!Llavero::borrar(udid));
}

void PruebaLlavero::laDelServicioAnteriorSeMuda()
{
    guardarFuera(anterior, "de antes");
    QVERIFY(Llavero::hayClave(udid));
    QCOMPARE(guardado(actual), QByteArray("de antes"));
    QCOMPARE(guardado(anterior), QByteArray());
    QCOMPARE(Llavero::leer(udid), std::optional(u"de antes"_s));

    // The current one wins, and a new one ends both.
    guardarFuera(anterior, "más vieja");
    QCOMPARE(Llavero::leer(udid), std::optional(u"de antes"_s));
    QVERIFY(Llavero::guardar(u"nueva"_s, udid));
    QCOMPARE(guardado(anterior), QByteArray());
}

void PruebaLlavero::loQueNoEsTextoNoSeLee()
{
    guardarFuera(actual, "espa\xF1ol");
    QVERIFY(!Llavero::leer(udid));
    QVERIFY(Llavero::borrar(udid));
}

void PruebaLlavero::borrarQuitaLasDos()
{
    guardarFuera(anterior, "a");
    guardarFuera(actual, "b");
    QVERIFY(Llavero::borrar(udid));
    QVERIFY(guardado(anterior).isEmpty() && guardado(actual).isEmpty());
}

void PruebaLlavero::cerradoEsComoVacio()
{
    QVERIFY(Llavero::guardar(u"encerrada"_s, udid));
    herramienta({u"lock"_s});
    QVERIFY(Llavero::disponible());
    QVERIFY(!Llavero::leer(udid) && !Llavero::hayClave(udid));
}

void PruebaLlavero::sinServicio()
{
    llavero.reset();
    QVERIFY(!Llavero::hayClave(udid));
}

QTEST_GUILESS_MAIN(PruebaLlavero)
#include "PruebaLlavero.moc"
