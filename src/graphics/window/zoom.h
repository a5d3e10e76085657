#pragma once
/// Zoom by pixel replication.

/// Zooms a frame (or the base picture) around a pixel; -1 keeps centre or factor, below -1 multiplies.
int gzoom(int frame, int x, int y, int factor, int keep);
int gunzoom();
/// Back to the magnification before. 0 when nothing is magnified.
int gzoom_back();
void greset_zoom();
/// While a picture is drawn anew: the base picture is the unzoomed one, and gget_zoom is 1. The zoom that
/// there was.
int gsuspend_zoom();
/// The view of before on the picture as it is now, when it is to be kept.
void gresume_zoom(bool keep);
int gget_zoom();
/// A pixel of the window to the pixel of the unzoomed picture.
float xZ_p(float x);
float yZ_p(float y);
