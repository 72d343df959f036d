#include "core/Motor.h"

#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

class PruebaAvisosDelMotor : public QObject
{
    Q_OBJECT

private slots:
    void loQueNoEsAviso_data();
    void loQueNoEsAviso();
    void losMiembros();
    void unFicheroTomaElLugarDeLosDatos();
    void unFicheroQueNoSeLeeSeQueda_data();
    void unFicheroQueNoSeLeeSeQueda();
    void unaTuberiaNoDetieneLaLectura();

private:
    QTemporaryDir carpeta;
};

void PruebaAvisosDelMotor::loQueNoEsAviso_data()
{
    QTest::addColumn<QString>("linea");
    QTest::newRow("plain text") << u"Abriendo la copia"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("brace alone") << u"{"_s;
    QTest::newRow("cut short") << u"{\"tipo\":\"total\",\"n\":"_s;
    QTest::newRow("no kind") << u"{\"n\":3}"_s;
    QTest::newRow("kind is a number") << u"{\"tipo\":3}"_s;
    QTest::newRow("two objects") << u"{\"tipo\":\"fin\"}{\"tipo\":\"fin\"}"_s;
    QTest::newRow("list") << u"[{\"tipo\":\"fin\"}]"_s;
    QTest::newRow("nested without an end") << u"{\"tipo\":"_s + QString(5000, u'[');
}

void PruebaAvisosDelMotor::loQueNoEsAviso()
{
    QFETCH(QString, linea);
    QVERIFY(!Motor::interpretar(linea));
}

void PruebaAvisosDelMotor::losMiembros()
{
    const auto aviso =
        Motor::interpretar(u"{\"tipo\":\"progreso\",\"hechos\":7,\"resto\":2.9,\"menos\":-2.9,\"texto\":\"ñ 😀\","
                           u"\"largo\":9007199254740993,\"enorme\":1e300,\"cifra\":\"12\",\"nada\":null}"_s);
    QVERIFY(aviso.has_value());
    QCOMPARE(aviso->tipo, u"progreso"_s);
    QCOMPARE(aviso->datos["tipo"_L1].toString(), u"progreso"_s);
    QCOMPARE(aviso->entero("hechos"_L1), 7);
    QCOMPARE(aviso->entero("resto"_L1), 2);
    QCOMPARE(aviso->entero("menos"_L1), -2);
    QCOMPARE(aviso->entero("largo"_L1), 9007199254740993);
    QCOMPARE(aviso->texto("texto"_L1), u"ñ 😀"_s);
    for (const auto clave : {"enorme"_L1, "cifra"_L1, "nada"_L1, "no está"_L1, "texto"_L1})
        QVERIFY2(!aviso->entero(clave), clave.data());
    for (const auto clave : {"hechos"_L1, "nada"_L1, "no está"_L1})
        QVERIFY2(!aviso->texto(clave), clave.data());
}

void PruebaAvisosDelMotor::unFicheroTomaElLugarDeLosDatos()
{
    const auto ruta = carpeta.filePath(u"datos ñ.json"_s);
    QFile fichero(ruta);
    QVERIFY(fichero.open(QIODevice::WriteOnly));
    fichero.write(R"({"tipo":"otro","lista":[1,2,3]})");
    fichero.close();
    const auto aviso = Motor::interpretar(u"{\"tipo\":\"fin\",\"n\":1,\"fichero_datos\":\"%1\"}"_s.arg(ruta));
    QVERIFY(aviso.has_value());
    QCOMPARE(aviso->tipo, u"fin"_s);
    QCOMPARE(aviso->datos["lista"_L1].toArray().size(), 3);
    QVERIFY(!aviso->datos.contains("n"_L1));
    QVERIFY(!QFile::exists(ruta));
}

void PruebaAvisosDelMotor::unFicheroQueNoSeLeeSeQueda_data()
{
    QTest::addColumn<QByteArray>("contenido");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("broken") << QByteArray("{\"lista\":");
    QTest::newRow("list") << QByteArray("[1]");
}

void PruebaAvisosDelMotor::unFicheroQueNoSeLeeSeQueda()
{
    QFETCH(QByteArray, contenido);
    const auto ruta = carpeta.filePath(u"roto.json"_s);
    QFile fichero(ruta);
    fichero.remove();
    if (!contenido.isEmpty()) {
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        fichero.write(contenido);
        fichero.close();
    }
    const auto aviso = Motor::interpretar(u"{\"tipo\":\"fin\",\"n\":1,\"fichero_datos\":\"%1\"}"_s.arg(ruta));
    QVERIFY(aviso.has_value());
    QCOMPARE(aviso->entero("n"_L1), 1);
    QCOMPARE(QFile::exists(ruta), !contenido.isEmpty());
}

void PruebaAvisosDelMotor::unaTuberiaNoDetieneLaLectura()
{
    const auto ruta = carpeta.filePath(u"tuberia"_s);
    QCOMPARE(QProcess::execute(u"mkfifo"_s, {ruta}), 0);
    const auto aviso = Motor::interpretar(u"{\"tipo\":\"fin\",\"n\":1,\"fichero_datos\":\"%1\"}"_s.arg(ruta));
    QVERIFY(aviso.has_value());
    QCOMPARE(aviso->entero("n"_L1), 1);
}

QTEST_GUILESS_MAIN(PruebaAvisosDelMotor)
#include "PruebaAvisosDelMotor.moc"
