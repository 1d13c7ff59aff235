function love.conf(t)
    t.identity = "sprites"
    t.window.width, t.window.height = 1280, 720
    t.window.vsync = 0
    t.modules.audio, t.modules.sound, t.modules.physics, t.modules.joystick = false, false, false, false
end
