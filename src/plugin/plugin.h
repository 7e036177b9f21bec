#pragma once

#include "framework/plugin_main.h"

/// The plug-in object behind the exported entries. There is one in a process, made on first use.
class CZXPlugIn : public Gatan::PlugIn::PlugInMain
{
  public:
    /// Makes the core object, which registers everything, and looks for the companion script package.
    void Start() override;
    /// Destroys the core object and lets go of the held handler and tag group.
    void End() override;
};

/// The one plug-in object.
CZXPlugIn& the_plug_in();
