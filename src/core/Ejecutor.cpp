#include "core/Ejecutor.h"

#include "core/Herramientas.h"

#include <QProcessEnvironment>
#include <QStringDecoder>
#include <QTimer>
#include <QVariant>

#include <csignal>
#include <memory>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// Turns batches of bytes into lines. Only a character cut by the end of a batch is kept for the next one; bytes that
/// make no character are lost by themselves.
class LectorDeLineas
{
public:
    QStringList leer(const QByteArray &lote)
    {
        const auto bytes = resto + lote;
        const auto cortados = bytesDeCaracterCortado(bytes);
        resto = bytes.last(cortados);
        QStringDecoder decodificar(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        QString texto = decodificar(bytes.chopped(cortados));
        if (decodificar.hasError())
            texto.remove(QChar::ReplacementCharacter);
        return partirEnLineas(texto);
    }

private:
    static qsizetype bytesDeCaracterCortado(const QByteArray &bytes)
    {
        const auto maximo = std::min<qsizetype>(3, bytes.size());
        for (qsizetype n = 1; n <= maximo; ++n) {
            const auto byte = static_cast<unsigned char>(bytes[bytes.size() - n]);
            if ((byte & 0xC0U) == 0x80U)
                continue; // inside a character: its first byte is further back
            if (byte < 0xC2U || byte > 0xF4U)
                return 0; // begins no character
            const qsizetype largo = byte >= 0xF0U ? 4 : byte >= 0xE0U ? 3 : 2;
            return largo > n ? n : 0;
        }
        return 0;
    }

    QByteArray resto;
};

QProcessEnvironment entornoDelTrabajo(const std::optional<Ejecutor::Entorno> &extra)
{
    auto entorno = extra ? QProcessEnvironment() : QProcessEnvironment::systemEnvironment();
    if (extra) {
        for (auto it = extra->cbegin(); it != extra->cend(); ++it)
            entorno.insert(it.key(), it.value());
    }
    entorno.insert(u"PATH"_s, Herramientas::rutasBusqueda().join(u':'));
    entorno.insert(u"PYTHONUNBUFFERED"_s, u"1"_s);
    return entorno;
}

/// Property of a child that was told to end: its process group.
constexpr auto grupoCancelado = "grupoCancelado";

/// Runs in the child between fork and exec: system calls only.
void aislarHijo()
{
    setpgid(0, 0);
    // A tool left alone would hold the phone and refuse every later backup, and nobody could end it from the window.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Ejecutor::acotarMemoria();
}

} // namespace

void Ejecutor::acotarMemoria()
{
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    rlimit limite = {};
    if (getrlimit(RLIMIT_DATA, &limite) != 0 || limite.rlim_max < memoriaDeUnHijo)
        return;
    limite.rlim_cur = memoriaDeUnHijo;
    setrlimit(RLIMIT_DATA, &limite);
#endif
}

Ejecutor::Entorno Ejecutor::entornoDelPrograma()
{
    Entorno variables;
    const auto sistema = QProcessEnvironment::systemEnvironment();
    const auto claves = sistema.keys();
    for (const auto &clave : claves)
        variables.insert(clave, sistema.value(clave));
    return variables;
}

QStringList partirEnLineas(const QString &texto)
{
    QStringList lineas;
    const auto anadir = [&](QStringView trozo) {
        const auto sobra = [](QChar c) {
            return c == u' ' || c == u'\t';
        };
        while (!trozo.isEmpty() && sobra(trozo.front()))
            trozo = trozo.sliced(1);
        while (!trozo.isEmpty() && sobra(trozo.back()))
            trozo.chop(1);
        if (!trozo.isEmpty())
            lineas << trozo.toString();
    };
    qsizetype principio = 0;
    for (qsizetype i = 0; i < texto.size(); ++i) {
        if (texto[i] == u'\r' && i + 1 < texto.size() && texto[i + 1] == u'\n') {
            ++i; // the pair is one character, which ends no line
            continue;
        }
        if (texto[i] != u'\n' && texto[i] != u'\r')
            continue;
        anadir(QStringView(texto).sliced(principio, i - principio));
        principio = i + 1;
    }
    anadir(QStringView(texto).sliced(principio));
    return lineas;
}

Ejecutor::Ejecutor(QObject *padre) : QObject(padre) {}

Ejecutor::~Ejecutor()
{
    if (const auto grupo = proceso ? static_cast<pid_t>(proceso->processId()) : 0; grupo > 0)
        kill(-grupo, SIGKILL);
}

bool Ejecutor::enMarcha() const
{
    return proceso && proceso->state() != QProcess::NotRunning;
}

void Ejecutor::lanzar(const QString &ejecutable, const QStringList &argumentos, const Linea &linea, const Final &final)
{
    auto *hijo = new QProcess(this);
    hijo->setProgram(ejecutable);
    hijo->setArguments(argumentos);
    hijo->setProcessEnvironment(entornoDelTrabajo(entornoExtra));
    entornoExtra.reset();
    hijo->setProcessChannelMode(QProcess::MergedChannels);
    hijo->setStandardInputFile(QProcess::nullDevice());
    hijo->setChildProcessModifier(aislarHijo);
    proceso = hijo;

    const auto leer = [hijo, linea, lector = std::make_shared<LectorDeLineas>()] {
        const auto lineas = lector->leer(hijo->readAll());
        for (const auto &una : lineas)
            linea(una);
    };
    const auto acabar = [this, hijo, final](int codigo) {
        hijo->disconnect();
        if (proceso == hijo)
            proceso.clear();
        hijo->deleteLater();
        final(codigo);
    };
    connect(hijo, &QProcess::readyRead, this, leer);
    connect(hijo, &QProcess::finished, this, [hijo, leer, acabar](int codigo) {
        leer(); // what the child left in the pipe comes before its ending
        if (const int grupo = hijo->property(grupoCancelado).toInt(); grupo > 0)
            kill(-grupo, SIGKILL); // whatever it started and did not end itself
        acabar(codigo);
    });
    // Queued, so that a launch that fails at once still answers after this call has returned.
    connect(
        hijo, &QProcess::errorOccurred, this,
        [hijo, linea, acabar](QProcess::ProcessError error) {
            if (error != QProcess::FailedToStart)
                return;
            linea(u"No se pudo arrancar: "_s + hijo->errorString());
            acabar(-1);
        },
        Qt::QueuedConnection);
    hijo->start(QIODevice::ReadOnly);
}

void Ejecutor::cancelar()
{
    const auto grupo = proceso ? static_cast<pid_t>(proceso->processId()) : 0;
    if (grupo <= 0)
        return;
    proceso->setProperty(grupoCancelado, static_cast<int>(grupo));
    if (kill(-grupo, SIGTERM) != 0)
        kill(grupo, SIGTERM); // so young that it has not made its group yet
    QTimer::singleShot(graciaAntesDeMatar, proceso, [grupo] { kill(-grupo, SIGKILL); });
}

} // namespace vellora
