// Filled in with the macro editor, the backlight parameters, the user-light editor and the
// configuration export.
namespace qx9 {}
