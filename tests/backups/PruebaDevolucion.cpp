#include "backups/Devolucion.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"
#include "support/BaseDePrueba.h"

#include <QDir>
#include <QTest>

#include <sys/file.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto deMarta = u"00008120-00061C2A3E4C1E9A"_s;
const auto deLuis = u"00008120-00061C2A3EB2B2B2"_s;

} // namespace

/// Which backup goes onto which phone is said before anything is asked, and looked at again before anything is done.
class PruebaDevolucion : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void laUnicaSuyaSePreguntaSinMas();
    void entreVariasSeElige();
    void laDeOtroSeDice();
    void laInacabadaSeNiega();
    void loQueCambiaTrasLaPregunta_data();
    void loQueCambiaTrasLaPregunta();
    void seCierraConSuTelefono();
    void sinCopias();

private:
    static QString carpeta(const QString &telefono, const QString &udid)
    {
        return QDir::homePath() + u"/Vellora/"_s + telefono + u"/Copias de seguridad/"_s + udid;
    }
    static bool crear(const QString &telefono, const QString &udid, const QByteArray &estado = "finished")
    {
        const auto plist = [](const QByteArray &clave, const QByteArray &valor) {
            return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>" + clave + "</key><string>" + valor +
                   "</string></dict></plist>";
        };
        const auto copia = carpeta(telefono, udid);
        return escribirFichero(copia + u"/Manifest.db"_s, "x") &&
               escribirFichero(copia + u"/Status.plist"_s, plist("SnapshotState", estado)) &&
               escribirFichero(copia + u"/Info.plist"_s, plist("Device Name", telefono.toUtf8() + " de antes"));
    }
    static Dispositivo telefono(const QString &nombre, const QString &udid)
    {
        Dispositivo uno;
        uno.id = udid;
        uno.nombre = nombre;
        return uno;
    }
    bool mirado()
    {
        return QTest::qWaitFor([this] { return !devolucion->mirando(); }, 10'000);
    }

    std::unique_ptr<Modelo> modelo;
    std::unique_ptr<Cerradura> cerradura;
    std::unique_ptr<Consentimiento> consentimiento;
    std::unique_ptr<Devolucion> devolucion;
};

void PruebaDevolucion::init()
{
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    modelo = std::make_unique<Modelo>();
    QTRY_VERIFY(!modelo->buscando());
    modelo->aplicar({telefono(u"Marta"_s, deMarta), telefono(u"Luis"_s, deLuis)}, {});
    modelo->seleccionar(deMarta);
    cerradura = std::make_unique<Cerradura>();
    consentimiento = std::make_unique<Consentimiento>(*modelo, *cerradura);
    devolucion = std::make_unique<Devolucion>(*modelo, *consentimiento);
}

void PruebaDevolucion::cleanup()
{
    devolucion.reset();
    consentimiento.reset();
    cerradura.reset();
    modelo.reset();
}

void PruebaDevolucion::laUnicaSuyaSePreguntaSinMas()
{
    QVERIFY(crear(u"Marta"_s, deMarta));
    devolucion->pedir();
    QVERIFY(mirado() && !devolucion->eligiendo());
    QVERIFY(consentimiento->abierto() && consentimiento->aQuien().contains(deMarta.right(6)));
    QVERIFY(consentimiento->texto().startsWith(u"Es la copia de «Marta de antes» del "));
    QVERIFY(consentimiento->texto().contains(u"No está comprobada") && !consentimiento->texto().contains(u"OTRO"));
}

void PruebaDevolucion::entreVariasSeElige()
{
    QVERIFY(crear(u"Luis"_s, deLuis) && crear(u"Marta"_s, deMarta));
    const auto actual = carpeta(u"Marta"_s, deMarta);
    const auto anterior = QFileInfo(actual).path() + u"/Copias anteriores/2026-05-03 21.04.10"_s;
    QVERIFY(QDir().mkpath(anterior) && QDir().rename(actual, anterior + u'/' + deMarta));
    QVERIFY(crear(u"Marta"_s, deMarta));
    devolucion->pedir();
    QVERIFY(mirado() && devolucion->eligiendo() && !consentimiento->abierto());
    const auto &copias = devolucion->copias();
    QCOMPARE(copias.size(), 3);
    QVERIFY(copias[0].udid == deMarta && copias[1].udid == deMarta && copias[2].udid == deLuis); // its own first
    QVERIFY((copias[0].carpetaCopias == anterior) != (copias[1].carpetaCopias == anterior));
}

void PruebaDevolucion::laDeOtroSeDice()
{
    QVERIFY(crear(u"Luis"_s, deLuis));
    devolucion->pedir();
    QVERIFY(mirado() && devolucion->eligiendo()); // not even the only one, when it is another's
    devolucion->elegir(0);
    QVERIFY(consentimiento->abierto() && consentimiento->aQuien().contains(deMarta.right(6)));
    QVERIFY(consentimiento->texto().contains(u"«Luis de antes»") && consentimiento->texto().contains(u"OTRO iPhone"));
}

void PruebaDevolucion::laInacabadaSeNiega()
{
    QVERIFY(crear(u"Marta"_s, deMarta, "uploading"));
    devolucion->pedir();
    QVERIFY(mirado() && !consentimiento->abierto());
    QVERIFY(consentimiento->aviso().startsWith(u"Esa copia está a medias"));
}

void PruebaDevolucion::loQueCambiaTrasLaPregunta_data()
{
    QTest::addColumn<int>("que");
    QTest::newRow("another backup took its place") << 0;
    QTest::newRow("it turned out unfinished") << 1;
    QTest::newRow("another program is at work on it") << 2;
}

void PruebaDevolucion::loQueCambiaTrasLaPregunta()
{
    QFETCH(const int, que);
    QVERIFY(crear(u"Marta"_s, deMarta));
    devolucion->pedir();
    QVERIFY(mirado() && consentimiento->abierto());
    const auto copia = carpeta(u"Marta"_s, deMarta);
    QFile ajeno(QFileInfo(copia).path());
    int tomada = -1;
    if (que == 0) {
        QFile lista(copia + u"/Manifest.db"_s);
        QVERIFY(lista.open(QIODevice::ReadWrite));
        QVERIFY(lista.setFileTime(QDateTime::currentDateTime().addDays(1), QFileDevice::FileModificationTime));
    } else if (que == 1) {
        const auto antes = QFileInfo(copia + u"/Manifest.db"_s).lastModified();
        QVERIFY(crear(u"Marta"_s, deMarta, "uploading"));
        QFile lista(copia + u"/Manifest.db"_s);
        QVERIFY(lista.open(QIODevice::ReadWrite) && lista.setFileTime(antes, QFileDevice::FileModificationTime));
    } else {
        tomada = open(QFile::encodeName(ajeno.fileName()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QCOMPARE(flock(tomada, LOCK_EX), 0);
    }
    consentimiento->responder(true);
    QTRY_VERIFY(consentimiento->aviso().startsWith(u"No he devuelto nada"));
    QVERIFY(!modelo->tarea().enMarcha());
    if (tomada >= 0)
        close(tomada);
}

void PruebaDevolucion::seCierraConSuTelefono()
{
    QVERIFY(crear(u"Luis"_s, deLuis) && crear(u"Marta"_s, deMarta));
    devolucion->pedir();
    modelo->seleccionar(deLuis); // while the disk is being looked through
    QVERIFY(!devolucion->eligiendo());
    QTest::qWait(200);
    QVERIFY(!devolucion->eligiendo() && !consentimiento->abierto());
}

void PruebaDevolucion::sinCopias()
{
    devolucion->pedir();
    QVERIFY(mirado() && !devolucion->eligiendo());
    QVERIFY(!consentimiento->aviso().isEmpty());
}

QTEST_GUILESS_MAIN(PruebaDevolucion)
#include "PruebaDevolucion.moc"
