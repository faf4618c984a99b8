package com.zentrix.android.sdk.lme;

import static org.junit.Assert.*;

import android.content.res.AssetManager;
import java.awt.image.BufferedImage;
import java.io.File;
import java.nio.file.Files;
import java.nio.file.Paths;
import java.util.function.Predicate;
import javax.imageio.ImageIO;
import org.junit.Test;

public class EndToEndTest {
    // One record per effect: its kind, then the arguments of its LmText_Add*TextEffect call.
    static final double[][] EFFECTS = {
        {10, 3, 0xFF202A60, 1, 0, 1},                                // stroke, outside
        {1, 120, 6, 4, 0xFF000000, 0.6},                             // outer shadow
        {2, 45, 3, 2, 0xFF400000, 0.5},                              // inner shadow
        {3, 6, 0xFFFFE000, 0.8},                                     // outer glow
        {7, 90, 1, 1, 0xFFFF0000, 1, 0, 0xFF0000FF, 0.5, 1},         // linear gradient: colour, opacity, position
    };

    static void add(LmText t, double[] e) {
        float[] f = new float[e.length];
        for (int i = 0; i < e.length; i++) f[i] = (float) e[i];
        switch ((int) e[0]) {
            case 10: t.LmText_AddStrokeTextEffect(f[1], (int) e[2], f[3], (int) e[4], (int) e[5]); break;
            case 1: t.LmText_AddOuterShadowTextEffect(f[1], f[2], f[3], (int) e[4], f[5]); break;
            case 2: t.LmText_AddInnerShadowTextEffect(f[1], f[2], f[3], (int) e[4], f[5]); break;
            case 3: t.LmText_AddOuterGlowTextEffect(f[1], (int) e[2], f[3]); break;
            case 7:
                int n = (e.length - 4) / 3;
                int[] colours = new int[n];
                float[] opacities = new float[n], positions = new float[n];
                for (int s = 0; s < n; s++) {
                    colours[s] = (int) e[4 + 3 * s];
                    opacities[s] = f[5 + 3 * s];
                    positions[s] = f[6 + 3 * s];
                }
                t.LmText_AddLinearGradientTextEffect(f[1], f[2], colours, opacities, positions, f[3]);
                break;
            default: fail("unknown effect kind " + e[0]);
        }
    }

    // The render's R, G, B, A bytes against tests/golden/java_end_to_end.png, the image the C++
    // text object draws from the same lines (centred in the view, padding 10, 6, 12, 8). With
    // LM_UPDATE_GOLDEN=1 the render is stored as the new golden image instead.
    static void assertGolden(int width, int height, int[] pixels) throws Exception {
        File file = new File(System.getProperty("lm.golden.dir"), "java_end_to_end.png");
        BufferedImage image = new BufferedImage(width, height, BufferedImage.TYPE_4BYTE_ABGR);
        for (int i = 0; i < pixels.length; i++)
            for (int band = 0; band < 4; band++)
                image.getRaster().setSample(i % width, i / width, band, pixels[i] >>> (8 * band) & 0xFF);
        if ("1".equals(System.getenv("LM_UPDATE_GOLDEN"))) {
            ImageIO.write(image, "png", file);
            return;
        }
        BufferedImage golden = ImageIO.read(file);
        assertEquals(width, golden.getWidth());
        assertEquals(height, golden.getHeight());
        assertArrayEquals(golden.getRaster().getPixels(0, 0, width, height, (int[]) null),
                          image.getRaster().getPixels(0, 0, width, height, (int[]) null));
    }

    @Test
    public void aTextConfiguredFromJavaRendersAsTheStoredImage() throws Exception {
        byte[] bytes = Files.readAllBytes(Paths.get(NativeProbe.SANS));
        AssetManager assets = new AssetManager(new File(NativeProbe.FONTS));
        int background = 0xFFE0F0FF;
        int[] first = null;
        @SuppressWarnings("unchecked") Predicate<LmText>[] fontSources = new Predicate[] {
            (Predicate<LmText>) t -> t.LmText_SetFont2("e2e-bytes", bytes),
            (Predicate<LmText>) t -> t.LmText_SetFont(NativeProbe.SANS),
            (Predicate<LmText>) t -> t.LmText_SetFont3(assets, "DejaVuSans.ttf"),
        };
        for (Predicate<LmText> font : fontSources) {
            LmText t = NativeProbe.configured(5, background);
            assertTrue(font.test(t));
            for (double[] e : EFFECTS) add(t, e);
            int[] pixels = t.LmText_RenderTextEffect();
            int[] size = t.LmText_GetDrawingBitmapSize();
            assertEquals(260 + t.LmText_GetEffectLeftOffset() + t.LmText_GetEffectRightOffset(), size[0]);
            assertEquals(140 + t.LmText_GetEffectTopOffset() + t.LmText_GetEffectBottomOffset(), size[1]);
            assertEquals(size[0] * size[1], pixels.length);
            if (first == null) assertGolden(size[0], size[1], first = pixels);
            assertArrayEquals(first, pixels);
            t.LmText_ClearAllTextEffect();
            assertEquals(0, t.LmText_GetEffectLeftOffset() + t.LmText_GetEffectTopOffset());
        }
    }
}
