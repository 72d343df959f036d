#include "averias/Desempaquetada.h"

#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

/// Killed without a warning at any step that lasts: what stands under its own name is whole, of the earlier run or of
/// the new one, and the next run puts everything in order. VELLORA_MUERTES: how many of the steps are tried (0: all).
class PruebaMuertes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void elMotor();
    void losExtractores();

private:
    using Contenido = QMap<QString, QByteArray>;

    bool correr(const QStringList &orden, int muereEn);
    int pasosDe(const QStringList &orden);
    void probar(const QStringList &orden, const QString &destino, const Contenido &antes, const Contenido &despues);

    CopiaDePrueba copias;
};

void PruebaMuertes::initTestCase()
{
    QVERIFY(copias.crearTelefono());
    QVERIFY(copias.copiar(u"copias/U"_s, {}));
    QVERIFY(desempaquetar(copias, copias.ruta(u"desempaquetada"_s)));
}

/// True when it came to its end; false when it was killed.
bool PruebaMuertes::correr(const QStringList &orden, int muereEn)
{
    QProcess proceso;
    auto entorno = QProcessEnvironment::systemEnvironment();
    entorno.insert(u"LD_PRELOAD"_s, QStringLiteral(MUERE));
    entorno.insert(u"MUERE_EN"_s, QString::number(muereEn));
    entorno.insert(u"MUERE_CUENTA"_s, copias.ruta(u"pasos"_s));
    proceso.setProcessEnvironment(entorno);
    proceso.setStandardOutputFile(QProcess::nullDevice());
    proceso.start(orden[0], orden.mid(1));
    proceso.waitForFinished();
    return proceso.exitStatus() == QProcess::NormalExit && proceso.exitCode() == 0;
}

int PruebaMuertes::pasosDe(const QStringList &orden)
{
    if (!correr(orden, -1))
        return 0;
    QFile pasos(copias.ruta(u"pasos"_s));
    return pasos.open(QIODevice::ReadOnly) ? pasos.readAll().trimmed().toInt() : 0;
}

void PruebaMuertes::probar(const QStringList &orden, const QString &destino, const Contenido &antes,
                           const Contenido &despues)
{
    QDir(destino).removeRecursively();
    const int pasos = pasosDe(orden);
    QVERIFY2(pasos > 30, qPrintable(QString::number(pasos)));
    const int cuantos = qEnvironmentVariableIntValue("VELLORA_MUERTES") > 0
                            ? qEnvironmentVariableIntValue("VELLORA_MUERTES")
                        : qEnvironmentVariableIsSet("VELLORA_MUERTES") ? pasos
                                                                       : 40;
    int muertes = 0;
    for (int i = 0; i < cuantos; ++i) {
        const int paso = 1 + static_cast<int>(qint64(i) * pasos / cuantos);
        QDir(destino).removeRecursively();
        for (auto it = antes.cbegin(); it != antes.cend(); ++it) {
            QFile fichero(destino + u'/' + it.key());
            QDir().mkpath(QFileInfo(fichero).path());
            QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(it.value()) == it.value().size());
        }
        // Two threads make a few steps more in one run than in another: the last ones may not come.
        muertes += correr(orden, paso) ? 0 : 1;
        const auto quedo = CopiaDePrueba::contenido(destino);
        for (auto it = quedo.cbegin(); it != quedo.cend(); ++it) {
            const bool esDeTrabajo = it.key().contains(".vellora-"_L1) ||
                                     (it.key().contains("(de copias anteriores)"_L1) && it.value() == "la de antes");
            const bool entero =
                it.value() == despues.value(it.key()) || (antes.contains(it.key()) && it.value() == antes[it.key()]);
            QVERIFY2(esDeTrabajo || entero, qPrintable(u"%1 after step %2"_s.arg(it.key()).arg(paso)));
        }
        for (auto it = antes.cbegin(); it != antes.cend(); ++it)
            QVERIFY2(quedo.contains(it.key()) || !despues.contains(it.key()), qPrintable(it.key()));
        QVERIFY(correr(orden, -1));
        const auto alFinal = CopiaDePrueba::contenido(destino);
        for (auto it = despues.cbegin(); it != despues.cend(); ++it)
            QVERIFY2(alFinal.value(it.key()) == it.value(), qPrintable(it.key()));
        // Working files go when they are a day old: until then another program might be writing them.
        for (const auto &nombre : alFinal.keys())
            QVERIFY(!nombre.contains(".vellora-"_L1) || nombre.contains(".vellora-parcial-"_L1));
    }
    QVERIFY2(muertes >= cuantos * 4 / 5, qPrintable(QString::number(muertes)));
}

void PruebaMuertes::elMotor()
{
    const auto destino = copias.ruta(u"sacada"_s);
    const QStringList orden{QStringLiteral(MOTOR), u"extraer"_s, u"U"_s, copias.ruta(u"copias"_s), destino};
    QVERIFY(correr(orden, -1));
    const auto despues = CopiaDePrueba::contenido(destino);
    QVERIFY(despues.size() > 15);
    probar(orden, destino, {{u"HomeDomain/Library/SMS/sms.db"_s, "la de antes"}}, despues);
}

void PruebaMuertes::losExtractores()
{
    const auto destino = copias.ruta(u"datos"_s);
    const QStringList orden{QStringLiteral(EXTRACTORES), copias.ruta(u"desempaquetada"_s), destino};
    QVERIFY(correr(orden, -1));
    const auto despues = CopiaDePrueba::contenido(destino);
    QVERIFY(despues.size() > 20);
    Contenido antes;
    // Texts are made anew, and what a chat told stays beside it; media come in the place of their beginnings only.
    for (const auto &nombre : despues.keys()) {
        const bool esTexto = nombre.endsWith(".txt"_L1) || nombre.endsWith(".csv"_L1) || nombre.endsWith(".html"_L1);
        antes[nombre] = esTexto ? QByteArray("la de antes") : despues[nombre].first(despues[nombre].size() / 2);
    }
    probar(orden, destino, antes, despues);
}

QTEST_GUILESS_MAIN(PruebaMuertes)
#include "PruebaMuertes.moc"
