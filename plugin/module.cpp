// The plug-in module is the billingcode library linked whole; its entry
// points come from the factory's Q_PLUGIN_METADATA.
