#include "backups/Catalogo.h"
#include "backups/Comprobante.h"
#include "backups/CopiaEnCurso.h"
#include "backups/CopiasAnteriores.h"
#include "support/CopiaDePrueba.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace vellora;

/// A new backup takes the place of the old one, and the program dies at any of the steps: one of the two stands whole
/// in its place at the next start, and the old one is gone only where the new one stands and none was to be kept.
/// VELLORA_MUERTES: how many of the steps are tried (0: all).
class PruebaRelevos : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void muerteEnCadaPaso_data();
    void muerteEnCadaPaso();
    void loQueNoEsNuestroSeQueda();
    void seGuardanLasQueSeDijo();

private:
    using Contenido = QMap<QString, QByteArray>;

    static Contenido sinNota(const QString &carpeta)
    {
        auto todo = CopiaDePrueba::contenido(carpeta);
        todo.remove(Comprobante::fichero());
        return todo;
    }
    void ponerLaVieja() const
    {
        QDir(copias).removeRecursively();
        QVERIFY(QDir().mkpath(copias));
        QCOMPARE(QProcess::execute(u"cp"_s, {u"-a"_s, sitio.ruta(u"vieja"_s), copias + u'/' + udid}), 0);
        QVERIFY(Comprobante::escribir(copias + u'/' + udid, ComprobacionDeCopia::Veredicto::Entera));
    }
    bool correr(const QString &cual, int guardadas, int muereEn) const
    {
        QProcess proceso;
        auto entorno = QProcessEnvironment::systemEnvironment();
        entorno.insert(u"LD_PRELOAD"_s, QStringLiteral(MUERE));
        entorno.insert(u"MUERE_EN"_s, QString::number(muereEn));
        entorno.insert(u"MUERE_CUENTA"_s, sitio.ruta(u"pasos"_s));
        proceso.setProcessEnvironment(entorno);
        proceso.start(QStringLiteral(COLOCA), {copias, udid, cual, QString::number(guardadas)});
        proceso.waitForFinished();
        return proceso.exitStatus() == QProcess::NormalExit && proceso.exitCode() == 0;
    }

    CopiaDePrueba sitio;
    QString copias;
    const QString udid = u"00008120-0000000000A0A0A0"_s;
    Contenido vieja;
    Contenido nueva;
};

void PruebaRelevos::initTestCase()
{
    QVERIFY(sitio.crearTelefono());
    QVERIFY(sitio.copiar(u"vieja"_s, {}) && sitio.copiar(u"nueva"_s, {}));
    copias = sitio.ruta(u"Copias de seguridad"_s);
    vieja = sinNota(sitio.ruta(u"vieja"_s));
    nueva = sinNota(sitio.ruta(u"nueva"_s));
    QVERIFY(vieja.size() > 20 && vieja != nueva);
}

void PruebaRelevos::muerteEnCadaPaso_data()
{
    QTest::addColumn<int>("guardadas");
    QTest::newRow("one is kept") << 1;
    QTest::newRow("none is kept") << 0;
}

void PruebaRelevos::muerteEnCadaPaso()
{
    QFETCH(int, guardadas);
    ponerLaVieja();
    QVERIFY(correr(sitio.ruta(u"nueva"_s), guardadas, -1));
    QCOMPARE(sinNota(copias + u'/' + udid), nueva);
    QFile cuenta(sitio.ruta(u"pasos"_s));
    QVERIFY(cuenta.open(QIODevice::ReadOnly));
    const int pasos = cuenta.readAll().trimmed().toInt();
    QVERIFY2(pasos >= 6, qPrintable(QString::number(pasos)));
    bool numero = false;
    const int pedidos = qEnvironmentVariableIntValue("VELLORA_MUERTES", &numero);
    const int cuantos = numero && pedidos == 0 ? pasos : std::min(pasos, pedidos > 0 ? pedidos : 25);
    int relevadas = 0;
    for (int i = 0; i < cuantos; ++i) {
        const int paso = 1 + static_cast<int>(qint64(i) * pasos / cuantos);
        const auto cual = "step " + QByteArray::number(paso);
        ponerLaVieja();
        QVERIFY(!correr(sitio.ruta(u"nueva"_s), guardadas, paso));
        QVERIFY(correr(u"-"_s, guardadas, -1)); // the next start
        const auto enSuSitio = sinNota(copias + u'/' + udid);
        QVERIFY2(enSuSitio == vieja || enSuSitio == nueva, cual.constData());
        QCOMPARE(Catalogo::estadoDe(copias + u'/' + udid).clase, Catalogo::Clase::Entera);
        QVERIFY2(!QFile::exists(copias + u"/.vellora-copia-en-curso"_s), cual.constData());
        const auto anteriores = CopiasAnteriores::listar(copias, udid);
        relevadas += enSuSitio == nueva ? 1 : 0;
        // One that was about to go may be there yet, whole; nothing of one that was going is.
        QVERIFY2(anteriores.size() <= 1 && (enSuSitio != vieja || anteriores.isEmpty()), cual.constData());
        QVERIFY2(guardadas == 0 || enSuSitio == vieja || anteriores.size() == 1, cual.constData());
        QCOMPARE(QDir(copias + u"/Copias anteriores"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(),
                 anteriores.size());
        if (!anteriores.isEmpty())
            QVERIFY2(sinNota(anteriores.first().carpeta()) == vieja, cual.constData());
    }
    QVERIFY2(relevadas > 0 && relevadas < cuantos, qPrintable(QString::number(relevadas)));
}

void PruebaRelevos::loQueNoEsNuestroSeQueda()
{
    // A link in the way of what is cleared away, and one inside it: what they lead to stays.
    const auto ajena = sitio.ruta(u"ajena"_s);
    QVERIFY(QDir().mkpath(ajena));
    QFile tesoro(ajena + u"/tesoro"_s);
    QVERIFY(tesoro.open(QIODevice::WriteOnly));
    ponerLaVieja();
    QVERIFY(QFile::link(ajena, copias + u"/.vellora-copia-en-curso"_s));
    QVERIFY(correr(u"-"_s, 1, -1));
    QVERIFY(tesoro.exists());
    QVERIFY(!correr(sitio.ruta(u"nueva"_s), 1, -1)); // and nothing is written through it
    QCOMPARE(QDir(ajena).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"tesoro"_s});
    QVERIFY(QFile::remove(copias + u"/.vellora-copia-en-curso"_s));
    QVERIFY(QDir().mkpath(copias + u"/.vellora-copia-en-curso/"_s + udid));
    QVERIFY(QFile::link(ajena, copias + u"/.vellora-copia-en-curso/"_s + udid + u"/01"_s));
    QVERIFY(correr(u"-"_s, 1, -1));
    QVERIFY(tesoro.exists() && !QFile::exists(copias + u"/.vellora-copia-en-curso"_s));
    QCOMPARE(sinNota(copias + u'/' + udid), vieja);
}

void PruebaRelevos::seGuardanLasQueSeDijo()
{
    using Veredicto = ComprobacionDeCopia::Veredicto;
    const auto poner = [this](Veredicto veredicto, int guardadas) {
        auto obra = CopiaEnCurso::abrir(copias, udid, CopiaEnCurso::Modo::Completa, guardadas);
        QVERIFY(obra);
        QCOMPARE(QProcess::execute(u"cp"_s, {u"-a"_s, sitio.ruta(u"nueva"_s), obra->carpeta()}), 0);
        QVERIFY(obra->colocar(veredicto));
    };
    const auto clases = [this] {
        QString lista;
        for (const auto &una : CopiasAnteriores::listar(copias, udid))
            lista += una.entera ? u'E' : u'?';
        return lista;
    };
    QDir(copias).removeRecursively();
    poner(Veredicto::Entera, 2);
    poner(Veredicto::Entera, 2);
    poner(Veredicto::Entera, 2);
    poner(Veredicto::Entera, 2);
    QCOMPARE(clases(), u"EE"_s);
    poner(Veredicto::Entera, 1);
    QCOMPARE(clases(), u"E"_s);
    // Of those that nobody could look into no number takes away the last whole one.
    for (int i = 0; i < 4; ++i)
        poner(Veredicto::SinComprobar, 0);
    QCOMPARE(clases().count(u'E'), 1);
    QVERIFY2(clases().size() <= 2, qPrintable(clases()));
    poner(Veredicto::Entera, 0);
    QCOMPARE(clases(), QString());
}

QTEST_GUILESS_MAIN(PruebaRelevos)
#include "PruebaRelevos.moc"
