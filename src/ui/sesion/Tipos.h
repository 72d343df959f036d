#pragma once

#include "backups/Copias.h"
#include "backups/CopiasAutomaticas.h"
#include "core/Diario.h"
#include "core/Tarea.h"
#include "services/AvisosPorTelegram.h"
#include "services/Cerradura.h"
#include "session/BateriaYRed.h"
#include "session/Dispositivo.h"
#include "session/Modelo.h"

#include <qqml.h>

/// Names under which the views know the objects of the program, so that the rooms below need not know of QML.
namespace vellora
{

struct DispositivoParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Dispositivo)
    QML_VALUE_TYPE(dispositivo)
};

struct TareaParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Tarea)
    QML_NAMED_ELEMENT(Tarea)
    QML_UNCREATABLE("The session makes it")
};

struct DiarioParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Diario)
    QML_NAMED_ELEMENT(Diario)
    QML_UNCREATABLE("The session makes it")
};

struct ModeloParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Modelo)
    QML_NAMED_ELEMENT(Modelo)
    QML_UNCREATABLE("The program makes it")
};

struct DatosBateriaParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::DatosBateria)
    QML_VALUE_TYPE(datosBateria)
};

struct BateriaYRedParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::BateriaYRed)
    QML_NAMED_ELEMENT(BateriaYRed)
    QML_UNCREATABLE("The program makes it")
};

struct CopiasAutomaticasParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::CopiasAutomaticas)
    QML_NAMED_ELEMENT(CopiasAutomaticas)
    QML_UNCREATABLE("The program makes it")
};

struct CerraduraParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Cerradura)
    QML_NAMED_ELEMENT(Cerradura)
    QML_UNCREATABLE("The program makes it")
};

struct AvisosPorTelegramParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::AvisosPorTelegram)
    QML_NAMED_ELEMENT(AvisosPorTelegram)
    QML_UNCREATABLE("The program makes it")
};

struct CopiasParaVistas {
    Q_GADGET
    QML_FOREIGN(vellora::Copias)
    QML_NAMED_ELEMENT(Copias)
    QML_UNCREATABLE("The program makes it")
};

} // namespace vellora
