#include "pack_configuration/pack_menu.h"

#include "core/active_form.h"
#include "monitor/frm_main.h"
#include "pack_configuration/pack_flows.h"

namespace zv {

void wirePackConfiguration(frmMain& form, PackConfigurationFlows& flows)
{
    form.mnuLoadPackConfiguration.onClick = [&flows] { flows.mnuLoadPackConfiguration_Click(false); };
    form.mnuLoadPackConfigurationRelearn.onClick = [&flows] { flows.mnuLoadPackConfiguration_Click(true); };
    form.mnuSavePackConfiguration.onClick = [&flows] { flows.mnuSavePackConfiguration_Click(); };
    form.mnuDatExport.onClick = [&flows] { flows.mnuDatExport_Click(); };
    form.mnuPPloadPackConfigurationToDevice.onClick
        = [&flows] { flows.mnuPPloadPackConfigurationToDevice_Click(); };
    form.mnuPPsavePackConfiguration.onClick = [&flows] { flows.mnuPPsavePackConfiguration_Click(); };
    form.mnuPPImportPackConfiguration.onClick = [&flows] { flows.mnuPPImportPackConfiguration_Click(); };
    if (platform::Desktop* desktop = form.desktop())
        form.mnuExport.onClick = [&flows, &form, desktop] {
            flows.mnuExport_Click(*desktop,
                [&form](const std::string& text) { form.sbStatusBar.setPanelText(kInfoPanel, text); });
        };
    form.refreshAvailability();
}

} // namespace zv
