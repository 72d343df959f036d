#include "support/CopiaDePrueba.h"
#include "support/MotorDePrueba.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// What may leave the phone and what not, by the true engine on the simulated phone. What needs disks of its own is in
/// tests/averias.
class PruebaBorradoProbado : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void delMedioYNoDeLaMemoria();
    void laCarpetaEsElTelefono_data();
    void laCarpetaEsElTelefono();
    void laNotaVaAntes();
    void sinPoderApuntar();

private:
    Corrida copiar() { return correrMotor({u"copiar"_s, udid, fotos}); }
    Corrida liberar() { return correrMotor({u"liberar"_s, udid, fotos}, true); }
    QMap<QString, QByteArray> enElTelefono() const { return CopiaDePrueba::contenido(media + u"/DCIM"_s); }
    bool fallar(const QString &peticion, const QJsonValue &error)
    {
        return telefono->orden({{u"orden"_s, u"fallar"_s}, {u"peticion"_s, peticion}, {u"error"_s, error}})[u"bien"_s]
            .toBool();
    }
    QByteArray apuntado() const { return leerFichero(fotos + u"/Borradas del iPhone.txt"_s); }

    std::unique_ptr<TelefonoSimulado> telefono;
    std::unique_ptr<QTemporaryDir> casa;
    QString udid;
    QString media;
    QString fotos;
};

void PruebaBorradoProbado::init()
{
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    casa = std::make_unique<QTemporaryDir>(QDir::homePath() + u"/casa"_s);
    udid = telefono->udid();
    media = telefono->contenido(udid) + u"/media"_s;
    fotos = casa->filePath(u"Fotos"_s);
    QVERIFY(enElTelefono().size() > 10);
}

void PruebaBorradoProbado::cleanup()
{
    telefono.reset();
    casa.reset();
}

/// A copy that only memory still has right is no copy.
void PruebaBorradoProbado::delMedioYNoDeLaMemoria()
{
    QCOMPARE(copiar().codigo, 0);
    const auto todo = enElTelefono();
    qputenv("LD_PRELOAD", MEDIO);
    qputenv("MEDIO_MALO", "/Fotos/100APPLE/");
    const auto hecho = liberar();
    qunsetenv("LD_PRELOAD");
    qunsetenv("MEDIO_MALO");
    QCOMPARE(hecho.codigo, 1);
    QVERIFY2(hecho.todo().contains(u"su copia no es igual"), qPrintable(hecho.todo()));
    const auto quedan = enElTelefono();
    qsizetype danadas = 0;
    for (auto it = todo.cbegin(); it != todo.cend(); ++it) {
        danadas += it.key().startsWith(u"100APPLE/") ? 1 : 0;
        QCOMPARE(quedan.contains(it.key()), it.key().startsWith(u"100APPLE/"));
    }
    QVERIFY(danadas > 5 && danadas < todo.size());
    QCOMPARE(hecho[u"fin"_s][u"siguen_ahi"_s].toInt(), danadas);
    QCOMPARE(hecho[u"fin"_s][u"borrados"_s].toInt(), todo.size() - danadas);
}

void PruebaBorradoProbado::laCarpetaEsElTelefono_data()
{
    QTest::addColumn<QString>("cual");
    QTest::newRow("the roll") << u"/DCIM"_s;
    QTest::newRow("a folder of it") << u"/DCIM/100APPLE"_s;
    QTest::newRow("all that a cable shows") << QString();
}

void PruebaBorradoProbado::laCarpetaEsElTelefono()
{
    QFETCH(const QString, cual);
    const auto todo = CopiaDePrueba::contenido(media);
    // Seen under another name, as mounts and links show it.
    QVERIFY(QFile::link(media + cual, fotos));
    const auto hecho = liberar();
    QVERIFY(hecho[u"plan"_s][u"a_borrar"_s].toInt() > 0);
    QCOMPARE(hecho.codigo, 1);
    QVERIFY2(hecho.todo().contains(u"es el propio iPhone"), qPrintable(hecho.todo()));
    QCOMPARE(CopiaDePrueba::contenido(media), todo);
}

/// Each photo is told of on the disk before its first file goes, and a photo that stays after all is told of too.
void PruebaBorradoProbado::laNotaVaAntes()
{
    QCOMPARE(copiar().codigo, 0);
    const auto todo = enElTelefono();
    QVERIFY(fallar(u"Remove:/DCIM/100APPLE/IMG_0003.MOV"_s, 10));
    const auto hecho = liberar();
    QCOMPARE(hecho.codigo, 1);
    QCOMPARE(hecho[u"fin"_s][u"siguen_ahi"_s].toInt(), 1);
    QCOMPARE(enElTelefono().keys(), QStringList{u"100APPLE/IMG_0003.MOV"_s});
    QCOMPARE(apuntado().count("/DCIM/100APPLE/IMG_0003.MOV\t"), 2);
    QCOMPARE(apuntado().count("\tNO SE BORRÓ\n"), 1);
    QCOMPARE(apuntado().count('\n'), todo.size() + 1);
}

void PruebaBorradoProbado::sinPoderApuntar()
{
    QCOMPARE(copiar().codigo, 0);
    const auto todo = enElTelefono();
    // The list exists and takes nothing more.
    QVERIFY(QFile::link(u"/dev/full"_s, fotos + u"/Borradas del iPhone.txt"_s));
    QCOMPARE(liberar().codigo, 1);
    QCOMPARE(enElTelefono(), todo);
    QVERIFY(QFile::remove(fotos + u"/Borradas del iPhone.txt"_s));
    // The disk takes the first line and then no more: a limit on the size of files stands for a full one.
    QVERIFY(escribirFichero(fotos + u"/Borradas del iPhone.txt"_s, QByteArray(100'000'000, 'x')));
    const auto hecho = ejecutar(u"/bin/sh"_s, {u"-c"_s, u"trap '' XFSZ; ulimit -f 195313; exec \"$@\""_s, u"sh"_s,
                                               QStringLiteral(MOTOR), u"liberar"_s, udid, fotos});
    QCOMPARE(hecho.codigo, 1);
    QVERIFY2(hecho.salida.contains("No puedo apuntar"), hecho.salida);
    const auto quedan = enElTelefono();
    const auto lineas = apuntado().mid(100'000'000).split('\n');
    QVERIFY(quedan.size() > 0);
    for (auto it = todo.cbegin(); it != todo.cend(); ++it)
        QVERIFY2(quedan.contains(it.key()) || apuntado().contains("/DCIM/" + it.key().toUtf8() + '\t'),
                 qPrintable(it.key()));
    QVERIFY(lineas.last().isEmpty()); // no half line
}

QTEST_GUILESS_MAIN(PruebaBorradoProbado)
#include "PruebaBorradoProbado.moc"
