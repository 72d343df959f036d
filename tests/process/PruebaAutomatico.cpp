#include "backups/Automatico.h"
#include "backups/Catalogo.h"
#include "support/TelefonoSimulado.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// The weekly backup: its script run for real, its unit files read by the system's own checker.
class PruebaAutomatico : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void sinTelefonoCalla();
    void copiaCuandoToca();
    void laEdadDecide_data();
    void laEdadDecide();
    void copiaQueFalla();
    void lasUnidadesValen();
    void encenderYApagar();
    void elSistemaNoQuiere();

private:
    int correrGuion(const QString &udid)
    {
        QFile fichero(Automatico::rutaDelGuion());
        QDir().mkpath(QFileInfo(fichero).path());
        if (!fichero.open(QIODevice::WriteOnly))
            return -1;
        fichero.write(
            Automatico::guion(udid, destino, u"/usr/bin/ideviceinfo"_s, u"/usr/bin/idevicebackup2"_s).toUtf8());
        fichero.close();
        const auto hecho = ejecutar(u"/bin/bash"_s, {Automatico::rutaDelGuion()});
        dicho = hecho.salida + hecho.palabras;
        return hecho.codigo;
    }
    /// A program in the way of the system's own: it writes down what it was asked, and answers.
    void fingir(const QString &programa, const QByteArray &cuerpo)
    {
        const auto ruta = QDir::homePath() + u"/bin/"_s + programa;
        QFile fichero(ruta);
        QVERIFY(fichero.open(QIODevice::WriteOnly));
        fichero.write("#!/bin/sh\necho \"$0 $*\" >> \"$HOME/pedido\"\n" + cuerpo + '\n');
        fichero.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString pedido()
    {
        QFile fichero(QDir::homePath() + u"/pedido"_s);
        return fichero.open(QIODevice::ReadOnly) ? QString::fromUtf8(fichero.readAll()) : QString();
    }

    std::unique_ptr<TelefonoSimulado> telefono;
    QString destino;
    QByteArray dicho;
};

void PruebaAutomatico::initTestCase()
{
    QVERIFY(QDir().mkpath(QDir::homePath() + u"/bin"_s));
    qputenv("PATH", (QDir::homePath() + u"/bin:"_s).toUtf8() + qgetenv("PATH"));
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
}

void PruebaAutomatico::init()
{
    // A name that a careless script would read as commands.
    destino = QDir::homePath() + u"/Copias de \"ñ\" $(touch ~/mal) `touch ~/mal` $HOME \\"_s;
    QDir(destino).removeRecursively();
    QVERIFY(QDir().mkpath(destino));
    for (const auto &fichero : {u"/pedido"_s, u"/.local/share/Vellora/copias.log"_s})
        QFile::remove(QDir::homePath() + fichero);
    fingir(u"notify-send"_s, {});
    fingir(u"systemctl"_s, {});
}

void PruebaAutomatico::sinTelefonoCalla()
{
    QCOMPARE(correrGuion(u"00008120-0000000000000000"_s), 0);
    QCOMPARE(dicho, QByteArray());
    QCOMPARE(Automatico::registro(), QString());
    QCOMPARE(pedido(), QString());
    QVERIFY(telefono->orden(u"bloquear"_s));
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QVERIFY(telefono->orden(u"desbloquear"_s));
    QVERIFY(Automatico::registro().isEmpty() && pedido().isEmpty());
}

void PruebaAutomatico::copiaCuandoToca()
{
    QVERIFY(!Catalogo::fechaDeLaUltimaCopia(destino, telefono->udid()));
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QCOMPARE(dicho, QByteArray());
    const auto registro = Automatico::registro();
    QVERIFY(registro.contains(u"  Empiezo la copia automática\n"_s) &&
            registro.endsWith(u"  Copia terminada bien\n"_s));
    QVERIFY(pedido().contains(u"notify-send Vellora Tu iPhone ya tiene copia de seguridad al día."_s));
    // The program finds it at its next start.
    QCOMPARE(
        Catalogo::diasDesde(Catalogo::fechaDeLaUltimaCopia(destino, telefono->udid()), QDateTime::currentDateTime()),
        0);
    QVERIFY(!QFile::exists(QDir::homePath() + u"/mal"_s));
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QCOMPARE(Automatico::registro(), registro); // last week's is good yet
}

void PruebaAutomatico::laEdadDecide_data()
{
    QTest::addColumn<int>("segundos");
    QTest::addColumn<bool>("copia");
    constexpr int dia = 86400;
    QTest::newRow("six days") << 6 * dia << false;
    QTest::newRow("a minute less than seven") << 7 * dia - 60 << false;
    QTest::newRow("seven days") << 7 * dia + 5 << true;
    QTest::newRow("a year") << 365 * dia << true;
}

void PruebaAutomatico::laEdadDecide()
{
    QFETCH(int, segundos);
    QFETCH(bool, copia);
    const auto carpeta = destino + u'/' + telefono->udid();
    QVERIFY(QDir().mkpath(carpeta));
    QFile info(carpeta + u"/Info.plist"_s);
    QVERIFY(info.open(QIODevice::WriteOnly));
    info.write("<plist/>");
    info.flush();
    QVERIFY(info.setFileTime(QDateTime::currentDateTime().addSecs(-segundos), QFileDevice::FileModificationTime));
    info.close();
    QVERIFY(QFileInfo(info).lastModified().secsTo(QDateTime::currentDateTime()) >= segundos - 2);
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QCOMPARE(Automatico::registro().contains(u"Empiezo la copia automática"_s), copia);
}

void PruebaAutomatico::copiaQueFalla()
{
    QVERIFY(telefono
                ->orden({{u"orden"_s, u"fallar"_s},
                         {u"peticion"_s, u"Backup"_s},
                         {u"error"_s, 208},
                         {u"veces"_s, 1}})[u"bien"_s]
                .toBool());
    QCOMPARE(correrGuion(telefono->udid()), 0);
    QVERIFY(Automatico::registro().endsWith(u"  La copia falló (el iPhone pudo quedarse bloqueado)\n"_s));
    QVERIFY(pedido().contains(u"No pude hacer la copia. Desbloquea el iPhone y déjalo conectado."_s));
}

void PruebaAutomatico::lasUnidadesValen()
{
    const auto carpeta = QDir::homePath() + u"/unidades"_s;
    QVERIFY(QDir().mkpath(carpeta));
    const auto escribir = [&](const QString &nombre, const QString &texto) {
        QFile fichero(carpeta + u'/' + nombre);
        QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(texto.toUtf8()) > 0);
    };
    escribir(Automatico::etiqueta() + u".service"_s, Automatico::servicio());
    escribir(Automatico::etiqueta() + u".timer"_s, Automatico::temporizador(3));
    const auto visto = ejecutar(u"systemd-analyze"_s,
                                {u"verify"_s, u"--user"_s, carpeta + u'/' + Automatico::etiqueta() + u".service"_s,
                                 carpeta + u'/' + Automatico::etiqueta() + u".timer"_s});
    QVERIFY2(visto.codigo == 0, visto.palabras.constData());
    QCOMPARE(visto.palabras, QByteArray());
}

void PruebaAutomatico::encenderYApagar()
{
    QVERIFY(!Automatico::activa());
    QCOMPARE(Automatico::activar(telefono->udid(), destino).value_or(QString()), QString());
    QVERIFY(Automatico::activa());
    const auto timer = Automatico::etiqueta() + u".timer"_s;
    QVERIFY(pedido().contains(u"systemctl --user enable --now "_s + timer));
    QVERIFY(QFileInfo(Automatico::rutaDelGuion()).isExecutable());
    QFile guion(Automatico::rutaDelGuion());
    QVERIFY(guion.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(guion.readAll()).contains(u"UDID=\"%1\""_s.arg(telefono->udid())));
    Automatico::desactivar();
    QVERIFY(!Automatico::activa());
    QVERIFY(pedido().contains(u"systemctl --user disable --now "_s + timer));
    QVERIFY(QFile::exists(Automatico::rutaDelGuion()));
}

void PruebaAutomatico::elSistemaNoQuiere()
{
    fingir(u"systemctl"_s, "echo 'Failed to connect to bus' >&2; exit 1");
    const auto fallo = Automatico::activar(telefono->udid(), destino);
    QVERIFY(fallo && fallo->startsWith(u"El sistema no aceptó el encargo: Failed to connect to bus"_s));
    QVERIFY(Automatico::activa()); // its files stay, as they were written
    Automatico::desactivar();
    QVERIFY(!Automatico::activa());
    // A file where the folder of the units should be.
    const auto unidades = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/systemd"_s;
    QDir(unidades).removeRecursively();
    QFile estorbo(unidades);
    QVERIFY(estorbo.open(QIODevice::WriteOnly));
    QCOMPARE(Automatico::activar(telefono->udid(), destino), u"No pude crear el encargo del sistema."_s);
    QVERIFY(estorbo.remove());
}

QTEST_GUILESS_MAIN(PruebaAutomatico)
#include "PruebaAutomatico.moc"
