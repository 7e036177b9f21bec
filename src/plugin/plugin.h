#pragma once

#include "framework/plugin_main.h"

/// The plug-in object on which the exported entries operate. There is one per process, created on first use.
class CZXPlugIn : public Gatan::PlugIn::PlugInMain
{
  public:
    /// Creates the core object, which registers everything, and checks for the companion script package.
    void Start() override;
    /// Deletes the core object, then the held handler, then the held tag group.
    void End() override;
};

/// The one plug-in object.
CZXPlugIn& the_plug_in();
