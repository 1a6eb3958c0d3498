#include "forms/Resources.h"

#include <QtGlobal>

void InitProgramResources()
{
    Q_INIT_RESOURCE(tallyvane);
}
